#include "clirunner.h"

#include <QProcess>
#include <QSignalSpy>

namespace Sorvik {
namespace Test {

CliResult runCli(const QStringList& arguments, const QProcessEnvironment& environment, int timeout)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    QSignalSpy finished(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished));
    process.start(QStringLiteral(SORVIK_CLI), arguments);
    CliResult result;
    if (!process.waitForStarted(30000))
        return result;
    if (finished.isEmpty() && !finished.wait(timeout)) {
        process.kill();
        process.waitForFinished();
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

} // namespace Test
} // namespace Sorvik
