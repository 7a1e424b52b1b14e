#pragma once

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

} // namespace Test
} // namespace Sorvik
