#pragma once

#include "tests/support/foldercase.h"
#include "tests/support/httpserver.h"

#include <QProcessEnvironment>
#include <QStringList>

class QProcess;

namespace Sorvik {
namespace Test {

// Runs sorvik-cli and waits for it while the test's event loop keeps turning (a loopback server
// in the test may have to answer it).
struct CliResult
{
    int exitCode = -1; // -1: crashed or did not finish
    QString out;
    QString err;
};

CliResult runCli(const QStringList& arguments, const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment(),
                 int timeout = 120000, const QString& workingDirectory = QString());

// What the command-line tests share: a loopback mirror serving the small taxdump, and a folder
// for each test function. Call serve() from initTestCase() and start() from init().
class CliCase : public FolderCase
{
public:
    CliCase();

protected:
    void serve();
    // The download address and the temporary folder the command sees.
    QProcessEnvironment environment(const QString& urlPath) const;

    HttpServer server;
    QByteArray archive;
};

} // namespace Test
} // namespace Sorvik
