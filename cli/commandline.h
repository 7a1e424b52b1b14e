#pragma once

#include <QStringList>

#include <memory>
#include <vector>

class QTextStream;

namespace Sorvik {
namespace Cli {

class Command;

// sorvik-cli's top level: picks the subcommand named by the first argument and runs it.
class CommandLine
{
public:
    CommandLine(QTextStream& out, QTextStream& err);
    ~CommandLine();

    // arguments: without the program name. Returns the process exit status.
    int run(const QStringList& arguments);
    // Whether the command the arguments name draws (before any application object exists).
    bool needsGui(const QStringList& arguments) const;

private:
    void printUsage(QTextStream& stream) const;

    QTextStream& out;
    QTextStream& err;
    std::vector<std::unique_ptr<Command>> commands;
};

} // namespace Cli
} // namespace Sorvik
