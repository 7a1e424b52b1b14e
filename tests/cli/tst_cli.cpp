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
    void renderWritesTheImage_data();
    void renderWritesTheImage();
    void renderRefusesCharts_data();
    void renderRefusesCharts();

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
    QTest::newRow("render without output") << QStringList{"render", "a.ontology"};
    QTest::newRow("render without chart") << QStringList{"render", "-o", "a.png"};
    QTest::newRow("render to jpeg") << QStringList{"render", "a.ontology", "-o", "a.jpg"};
    QTest::newRow("render two charts") << QStringList{"render", "a", "b", "-o", "a.png"};
    QTest::newRow("render zero levels") << QStringList{"render", "a", "-o", "a.png", "--max-levels", "0"};
    QTest::newRow("render levels not a number") << QStringList{"render", "a", "-o", "a.png", "--max-levels", "five"};
    QTest::newRow("render negative percent") << QStringList{"render", "a", "-o", "a.png", "--min-percent", "-1"};
    QTest::newRow("render percent over 100") << QStringList{"render", "a", "-o", "a.png", "--min-percent", "100.5"};
    QTest::newRow("render percent not a number") << QStringList{"render", "a", "-o", "a.png", "--min-percent", "nan"};
    QTest::newRow("render size 0") << QStringList{"render", "a", "-o", "a.png", "--size", "0"};
    QTest::newRow("render huge size") << QStringList{"render", "a", "-o", "a.png", "--size", "100000"};
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
    QTest::newRow("top lists render") << QStringList{"--help"} << "render";
    QTest::newRow("render") << QStringList{"render", "--help"} << "--min-percent";
}

void TestCli::helpOnEveryLevel()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, mentions);
    const Result result = runCli(arguments);
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.out.contains(mentions), qPrintable(result.out));
}

void TestCli::renderWritesTheImage_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("size");
    QTest::newRow("png at the default size") << QStringList() << "chart.png" << 1000;
    QTest::newRow("small png") << QStringList{"--size", "120"} << "small.png" << 120;
    QTest::newRow("svg") << QStringList{"--size", "300", "--max-levels", "2"} << "chart.svg" << 300;
    QTest::newRow("all options") << QStringList{"--max-levels", "300", "--min-percent", "0", "--size", "50"}
                                 << "all.PNG" << 50;
}

void TestCli::renderWritesTheImage()
{
    QFETCH(QStringList, options);
    QFETCH(QString, output);
    QFETCH(int, size);
    const QString chart = dir.filePath(QStringLiteral("render.ontology"));
    Sorvik::Test::writeTree(chart, QStringLiteral("1(2:5(3:2) 4:1 5:40)"));
    const QString out = dir.filePath(output);
    const Result result = runCli(QStringList{QStringLiteral("render"), chart, QStringLiteral("-o"), out} + options);
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
    if (output.endsWith(QLatin1String(".svg"))) {
        QFile svg(out);
        QVERIFY(svg.open(QIODevice::ReadOnly));
        const QByteArray text = svg.readAll();
        QVERIFY(text.contains(QStringLiteral("viewBox=\"0 0 %1 %1\"").arg(size).toUtf8()));
    } else {
        const QImage image(out);
        QCOMPARE(image.size(), QSize(size, size));
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    }
}

void TestCli::renderRefusesCharts_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<bool>("count");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("uncounted") << "1(2 3)" << false << QByteArray();
    QTest::newRow("total 0") << "1(2:0 3:0)" << true << QByteArray();
    QTest::newRow("text") << QString() << false << QByteArray("9606\n562\n");
    QTest::newRow("empty") << QString() << false << QByteArray("");
    QTest::newRow("binary") << QString() << false << QByteArray(4096, '\x01');
    QTest::newRow("missing") << QString() << false << QByteArray("<missing>");
    QTest::newRow("unwritable output") << "1(2:1)" << true << QByteArray("<unwritable>");
}

void TestCli::renderRefusesCharts()
{
    QFETCH(QString, tree);
    QFETCH(bool, count);
    QFETCH(QByteArray, content);
    const QString chart = dir.filePath(QStringLiteral("refused-%1.ontology").arg(QTest::currentDataTag()));
    if (!tree.isEmpty()) {
        Sorvik::Test::writeTree(chart, tree, count);
    } else if (content != "<missing>") {
        QFile f(chart);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(content);
    }
    const QString out = content == "<unwritable>" ? dir.filePath(QStringLiteral("no/such/folder/chart.png"))
                                                 : dir.filePath(QStringLiteral("refused.png"));
    const Result result = runCli({QStringLiteral("render"), chart, QStringLiteral("-o"), out});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.err.count(QLatin1Char('\n')), 1);
    QVERIFY2(result.err.contains(content == "<unwritable>" ? out : chart), qPrintable(result.err));
    QVERIFY(!QFile::exists(out));
}

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
