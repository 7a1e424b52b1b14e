#include "tests/support/clirunner.h"
#include "tests/support/fixtures.h"
#include "tests/support/treeliteral.h"

#include <QImage>
#include <QTemporaryDir>
#include <QRegularExpression>
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
        QTest::newRow("pdf with a title") << QStringList{"--title", "Gut", "--legend"} << "chart.pdf" << 1000;
        QTest::newRow("png at 300 dpi") << QStringList{"--size", "600", "--dpi", "300"} << "chart.png" << 600;
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
        // The image takes the drawing's proportions, its longer side the size asked for.
        if (output.endsWith(QLatin1String(".pdf"))) {
            const QByteArray pdf = file.readAll();
            QVERIFY(pdf.startsWith("%PDF-"));
            QVERIFY(pdf.contains("/Title"));
        } else if (output.endsWith(QLatin1String(".svg"))) {
            const QByteArray svg = file.readAll();
            const QRegularExpressionMatch box =
                QRegularExpression(QStringLiteral("viewBox=\"0 0 (\\d+) (\\d+)\"")).match(QString::fromUtf8(svg));
            QVERIFY(box.hasMatch());
            QCOMPARE(std::max(box.captured(1).toInt(), box.captured(2).toInt()), size);
        } else {
            const QImage image = QImage::fromData(file.readAll());
            QCOMPARE(std::max(image.width(), image.height()), size);
            QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
            if (options.contains(QLatin1String("--dpi")))
                QCOMPARE(image.dotsPerMeterX(), 11811);
        }
    }

    void tableWritesTheNumbers_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("expected");
        // Written to standard output unless -o is given; what the error names otherwise.
        const QString tsv = QStringLiteral("id\ttaxid\tname\trank\tlineage\town_count\tclade_count\tpercent\n"
                                           "1\t\t1\t\t1\t0\t8\t100\n"
                                           "2\t\t2\t\t1; 2\t5\t7\t87.5\n"
                                           "3\t\t3\t\t1; 2; 3\t2\t2\t25\n"
                                           "4\t\t4\t\t1; 4\t1\t1\t12.5\n");
        QTest::newRow("tsv to standard output") << QStringList() << 0 << tsv;
        QTest::newRow("every sample") << QStringList{"--sample", "all"} << 0 << tsv;
        QTest::newRow("its one sample") << QStringList{"--sample", "table"} << 0 << tsv;
        QTest::newRow("csv file") << QStringList{"-o", "OUT.csv"} << 0
                                  << "id,taxid,name,rank,lineage,own_count,clade_count,percent\n1,,1,,1,0,8,100\n";
        QTest::newRow("a sample it lacks") << QStringList{"--sample", "skin"} << 1 << "no sample \"skin\"";
        QTest::newRow("a spreadsheet") << QStringList{"-o", "OUT.xlsx"} << 2 << "must end in .tsv";
    }

    void tableWritesTheNumbers()
    {
        QFETCH(QStringList, options);
        QFETCH(int, exitCode);
        QFETCH(QString, expected);
        const QString chart = dir.filePath(QStringLiteral("table.ontology"));
        writeTree(chart, QStringLiteral("1(2:5(3:2) 4:1)"));
        const QString out = dir.filePath(QStringLiteral("table-%1").arg(QTest::currentDataTag()).replace(' ', '-'));
        for (QString& option : options)
            option.replace(QLatin1String("OUT"), out);
        const CliResult result = runCli(QStringList{QStringLiteral("table"), chart} + options);
        QCOMPARE(result.exitCode, exitCode);
        if (exitCode != 0) {
            QVERIFY2(result.err.contains(expected), qPrintable(result.err));
            return;
        }
        QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
        const int written = options.indexOf(QStringLiteral("-o"));
        const QString text = written < 0 ? result.out : QString::fromUtf8(fileContents(options[written + 1]));
        QVERIFY2(text.startsWith(expected), qPrintable(text));
    }

    void htmlWritesOnePage_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("expected");
        QTest::newRow("default") << QStringList() << 0 << "<title>page</title>";
        QTest::newRow("its own title and view") << QStringList{"--title", "Gut & co", "--max-levels", "3"} << 0
                                                << "<title>Gut &amp; co</title>";
        QTest::newRow("no output") << QStringList{"NO-OUTPUT"} << 2 << "missing -o OUT";
        QTest::newRow("a share beyond the whole") << QStringList{"--min-percent", "200"} << 2 << "--min-percent";
    }

    void htmlWritesOnePage()
    {
        QFETCH(QStringList, options);
        QFETCH(int, exitCode);
        QFETCH(QString, expected);
        const QString chart = dir.filePath(QStringLiteral("page.ontology"));
        writeTree(chart, QStringLiteral("1(2:5(3:2) 4:1)"));
        const QString out = dir.filePath(QStringLiteral("%1.html").arg(QTest::currentDataTag()).replace(' ', '-'));
        QStringList arguments{QStringLiteral("html"), chart};
        if (!options.removeAll(QStringLiteral("NO-OUTPUT")))
            arguments << QStringLiteral("-o") << out;
        const CliResult result = runCli(arguments + options);
        QCOMPARE(result.exitCode, exitCode);
        if (exitCode != 0) {
            QVERIFY2(result.err.contains(expected), qPrintable(result.err));
            QVERIFY(!QFile::exists(out));
            return;
        }
        const QString page = QString::fromUtf8(fileContents(out));
        QVERIFY2(page.contains(expected), qPrintable(page.left(400)));
        QVERIFY(page.contains(QStringLiteral("\"maxLevels\":%1").arg(options.contains("3") ? 3 : 5)));
    }

    void renderOptions_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("same");
        // Compared with the plain render of chart B: "same", "differs", or an exit status and
        // what its one line of error names.
        QTest::newRow("matched to itself") << QStringList{"--colours-from", "B"} << "same";
        QTest::newRow("matched to another chart") << QStringList{"--colours-from", "A"} << "differs";
        QTest::newRow("chains on rings of their own") << QStringList{"--no-collapse"} << "differs";
        QTest::newRow("another palette") << QStringList{"--palette", "okabe-ito"} << "differs";
        QTest::newRow("legend beside the chart") << QStringList{"--legend"} << "wider";
        QTest::newRow("unknown palette") << QStringList{"--palette", "rainbow"} << "2 --palette";
        QTest::newRow("other chart missing") << QStringList{"--colours-from", "missing"} << "1 missing";
    }

    void renderOptions()
    {
        QFETCH(QStringList, options);
        QFETCH(QString, same);
        // B: a chain above three taxa; A shares c with it, with a palette colour of its own.
        const QString a = dir.filePath(QStringLiteral("A.ontology"));
        const QString b = dir.filePath(QStringLiteral("B.ontology"));
        writeTree(a, QStringLiteral("r(top(x:9 y:5 c:1))"));
        writeTree(b, QStringLiteral("r(top(c:6 d:3 e:1))"));
        for (QString& option : options) {
            if (option == QLatin1String("A") || option == QLatin1String("B") || option == QLatin1String("missing"))
                option = dir.filePath(option + QStringLiteral(".ontology"));
        }
        const auto render = [&](const QStringList& extra, const QString& name) {
            const QString out = dir.filePath(name);
            const CliResult result = runCli(QStringList{"render", b, "-o", out, "--size", "200"} + extra);
            return std::make_pair(result, out);
        };
        const auto plain = render({}, QStringLiteral("plain.png"));
        QCOMPARE(plain.first.exitCode, 0);
        const auto optioned = render(options, QStringLiteral("%1.png").arg(QTest::currentDataTag()));
        if (same.at(0).isDigit()) {
            QCOMPARE(optioned.first.exitCode, same.section(QLatin1Char(' '), 0, 0).toInt());
            QVERIFY2(optioned.first.err.contains(same.section(QLatin1Char(' '), 1)), qPrintable(optioned.first.err));
            QVERIFY(!QFile::exists(optioned.second));
            return;
        }
        QCOMPARE(optioned.first.exitCode, 0);
        const QImage before(plain.second);
        const QImage after(optioned.second);
        if (same == QLatin1String("wider")) {
            QVERIFY(after.width() > after.height());
            QVERIFY(before.width() <= before.height() + 1);
            return;
        }
        QCOMPARE(after == before, same == QLatin1String("same"));
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
        // Every command that reads a chart refuses it alike, with one line naming the file.
        const QStringList commands = tree == QLatin1String("1(2:0 3:0)") ? QStringList{"render", "html"}
                                                                         : QStringList{"render", "html", "table"};
        for (const QString& command : commands) {
            const QString suffix = command == QLatin1String("render") ? QStringLiteral("png")
                                   : command == QLatin1String("html") ? QStringLiteral("html")
                                                                      : QStringLiteral("csv");
            const QString out = dir.filePath((content == "<unwritable>" ? QStringLiteral("no/such/folder/chart.")
                                                                        : QStringLiteral("refused.")) + suffix);
            const CliResult result = runCli({command, chart, QStringLiteral("-o"), out});
            QCOMPARE(result.exitCode, 1);
            QCOMPARE(result.err.count(QLatin1Char('\n')), 1);
            QVERIFY2(result.err.contains(content == "<unwritable>" ? out : chart), qPrintable(result.err));
            QVERIFY(!QFile::exists(out));
        }
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
