#include "tests/support/clirunner.h"
#include "tests/support/treeliteral.h"

#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

using namespace Sorvik::Test;

class TestCli : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(dir.isValid()); }

    void infoPrintsTheHeader_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<bool>("count");
        QTest::addColumn<QString>("expected");
        QTest::newRow("counted") << "1(2:5(3:2) 4:1)" << true
                                 << "nodes: 4\ncounted: true\nroot: 1\ntotal: 8\nunknown: 0\nunclassified: 0\n";
        QTest::newRow("unknown and unclassified reads") << "1(2:5(3:2) unknown:3 unclassified:4)" << true
                                                        << "nodes: 5\ncounted: true\nroot: 1\ntotal: 14\nunknown: 3\n"
                                                           "unclassified: 4\n";
        QTest::newRow("uncounted") << "131567(2 2157)" << false << "nodes: 3\ncounted: false\nroot: 131567\ntotal: \n";
    }

    void infoPrintsTheHeader()
    {
        QFETCH(QString, tree);
        QFETCH(bool, count);
        QFETCH(QString, expected);
        const QString file = dir.filePath(QStringLiteral("%1.ontology").arg(QTest::currentDataTag()));
        writeTree(file, tree, count);
        const CliResult result = runCli({QStringLiteral("info"), file});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, expected);
    }

    void renderWritesTheImage_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("output");
        QTest::addColumn<int>("size");
        QTest::newRow("png at the default size") << QStringList() << "chart.png" << 1000;
        QTest::newRow("svg") << QStringList{"--size", "300", "--max-levels", "2"} << "chart.svg" << 300;
    }

    void renderWritesTheImage()
    {
        QFETCH(QStringList, options);
        QFETCH(QString, output);
        QFETCH(int, size);
        const QString chart = dir.filePath(QStringLiteral("render.ontology"));
        writeTree(chart, QStringLiteral("1(2:5(3:2) 4:1 5:40)"));
        const QString out = dir.filePath(output);
        const CliResult result = runCli(QStringList{QStringLiteral("render"), chart, QStringLiteral("-o"), out} + options);
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
        QFile file(out);
        QVERIFY(file.open(QIODevice::ReadOnly));
        if (output.endsWith(QLatin1String(".svg"))) {
            QVERIFY(file.readAll().contains(QStringLiteral("viewBox=\"0 0 %1 %1\"").arg(size).toUtf8()));
        } else {
            const QImage image = QImage::fromData(file.readAll());
            QCOMPARE(image.size(), QSize(size, size));
            QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
        }
    }

    void refusesFilesItCannotUse_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<bool>("count");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("uncounted") << "1(2 3)" << false << QByteArray();
        QTest::newRow("total 0") << "1(2:0 3:0)" << true << QByteArray();
        QTest::newRow("missing") << QString() << false << QByteArray("<missing>");
        QTest::newRow("unwritable output") << "1(2:1)" << true << QByteArray("<unwritable>");
    }

    void refusesFilesItCannotUse()
    {
        QFETCH(QString, tree);
        QFETCH(bool, count);
        QFETCH(QByteArray, content);
        const QString chart = dir.filePath(QStringLiteral("refused-%1.ontology").arg(QTest::currentDataTag()));
        QFile file(chart);
        if (!tree.isEmpty())
            writeTree(chart, tree, count);
        else if (content != "<missing>")
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        const QString out = dir.filePath(content == "<unwritable>" ? QStringLiteral("no/such/folder/chart.png")
                                                                   : QStringLiteral("refused.png"));
        const CliResult result = runCli({QStringLiteral("render"), chart, QStringLiteral("-o"), out});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.err.count(QLatin1Char('\n')), 1);
        QVERIFY2(result.err.contains(content == "<unwritable>" ? out : chart), qPrintable(result.err));
        QVERIFY(!QFile::exists(out));
        // What is no ontology at all, info refuses too, and creates nothing.
        if (!tree.isEmpty())
            return;
        const CliResult info = runCli({QStringLiteral("info"), chart});
        QCOMPARE(info.exitCode, 1);
        QVERIFY(info.out.isEmpty());
        QCOMPARE(info.err.count(QLatin1Char('\n')), 1);
        QVERIFY(info.err.contains(chart));
        QCOMPARE(QFile::exists(chart), content != "<missing>");
    }

private:
    QTemporaryDir dir;
};

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
