#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

class QTextStream;

namespace Sorvik {
namespace Cli {

// One subcommand of sorvik-cli: its own options, help text and exit status.
class Command
{
public:
    enum ExitCode { Success = 0, Failure = 1, UsageError = 2, Interrupted = 130 };

    Command(QTextStream& out, QTextStream& err);
    virtual ~Command();

    virtual QString getName() const = 0;
    virtual QString getSummary() const = 0;
    // Whether the command draws, and so needs a GUI application rather than a core one.
    virtual bool needsGui() const { return false; }

    // arguments: the subcommand's name followed by its arguments.
    int run(const QStringList& arguments);

protected:
    // Declares options and positional arguments on the parser.
    virtual void setUp(QCommandLineParser& parser) = 0;
    // Runs with the parsed arguments; may return UsageError through usage().
    virtual int execute(const QCommandLineParser& parser) = 0;

    int usage(const QString& message);
    int fail(const QString& message);
    // Says that Ctrl-C stopped the command.
    int interrupted();

    QTextStream& out;
    QTextStream& err;

private:
    QString helpText;
};

} // namespace Cli
} // namespace Sorvik
