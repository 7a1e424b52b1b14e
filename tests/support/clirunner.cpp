#include "tests/support/clirunner.h"

#include "tests/support/fixtures.h"
#include "tests/support/taxdump.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QtTest>

#include <csignal>

namespace Sorvik {
namespace Test {

CliResult runCli(const QStringList& arguments, const QProcessEnvironment& environment, int timeout,
                 const QString& workingDirectory)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    if (!workingDirectory.isEmpty())
        process.setWorkingDirectory(workingDirectory);
    bool done = false;
    QObject::connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), [&done] { done = true; });
    process.start(QStringLiteral(SORVIK_CLI), arguments);
    CliResult result;
    if (!process.waitForStarted(30000))
        return result;
    // Polls while the event loop turns: a loopback server in the test may have to answer.
    QElapsedTimer clock;
    clock.start();
    while (!done && clock.elapsed() < timeout)
        QTest::qWait(10);
    if (!done) {
        process.kill();
        process.waitForFinished();
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

CliCase::CliCase()
{
    // A command that exits before it has read all its input must not end the test.
    ::signal(SIGPIPE, SIG_IGN);
}

void CliCase::serve()
{
    QVERIFY(top.isValid() && server.isListening());
    archive = serveSmallTaxdump(server, top.path());
    QVERIFY(!archive.isEmpty());
}

QProcessEnvironment CliCase::environment(const QString& urlPath) const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("SORVIK_TAXDUMP_URL"), server.url(urlPath).toString());
    env.insert(QStringLiteral("TMPDIR"), dir->path());
    return env;
}

} // namespace Test
} // namespace Sorvik
