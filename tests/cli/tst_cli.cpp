#include "tests/support/treeliteral.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Result
{
    int exitCode = -1;
    QString out;
    QString err;
};

Result runCli(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral(SORVIK_CLI), arguments);
    Result result;
    if (!process.waitForFinished(120000)) {
        process.kill();
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

} // namespace

class TestCli : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void infoPrintsTheHeader_data();
    void infoPrintsTheHeader();
    void infoRefusesOtherFiles_data();
    void infoRefusesOtherFiles();
    void usageErrors_data();
    void usageErrors();
    void helpOnEveryLevel_data();
    void helpOnEveryLevel();

private:
    QTemporaryDir dir;
};

void TestCli::initTestCase()
{
    QVERIFY(dir.isValid());
}

void TestCli::infoPrintsTheHeader_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<bool>("count");
    QTest::addColumn<QString>("expected");
    QTest::newRow("counted") << "1(2:5(3:2) 4:1)" << true << "nodes: 4\ncounted: true\nroot: 1\ntotal: 8\n";
    QTest::newRow("uncounted") << "131567(2 2157)" << false << "nodes: 3\ncounted: false\nroot: 131567\ntotal: \n";
}

void TestCli::infoPrintsTheHeader()
{
    QFETCH(QString, tree);
    QFETCH(bool, count);
    QFETCH(QString, expected);
    const QString file = dir.filePath(QStringLiteral("%1.ontology").arg(QTest::currentDataTag()));
    Sorvik::Test::writeTree(file, tree, count);
    const Result result = runCli({QStringLiteral("info"), file});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, expected);
}

void TestCli::infoRefusesOtherFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("text") << QByteArray("9606\n562\n");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("binary") << QByteArray(1000, '\0');
    QTest::newRow("missing") << QByteArray("<missing>");
}

void TestCli::infoRefusesOtherFiles()
{
    QFETCH(QByteArray, content);
    const QString file = dir.filePath(QStringLiteral("other-%1").arg(QTest::currentDataTag()));
    if (content != "<missing>") {
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(content);
    }
    const Result result = runCli({QStringLiteral("info"), file});
    QCOMPARE(result.exitCode, 1);
    QVERIFY(result.out.isEmpty());
    QCOMPARE(result.err.count(QLatin1Char('\n')), 1);
    QVERIFY(result.err.contains(file));
    QVERIFY(!QFile::exists(file) || content != "<missing>");
}

void TestCli::usageErrors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no command") << QStringList();
    QTest::newRow("unknown command") << QStringList{"frobnicate"};
    QTest::newRow("info without file") << QStringList{"info"};
    QTest::newRow("info with two files") << QStringList{"info", "a", "b"};
    QTest::newRow("unknown option") << QStringList{"info", "--colour", "a"};
}

void TestCli::usageErrors()
{
    QFETCH(QStringList, arguments);
    const Result result = runCli(arguments);
    QCOMPARE(result.exitCode, 2);
    QVERIFY(!result.err.isEmpty());
}

void TestCli::helpOnEveryLevel_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("mentions");
    QTest::newRow("top") << QStringList{"--help"} << "info";
    QTest::newRow("info") << QStringList{"info", "--help"} << "FILE";
}

void TestCli::helpOnEveryLevel()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, mentions);
    const Result result = runCli(arguments);
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.out.contains(mentions), qPrintable(result.out));
}

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
