#include "ontology/inputformat.h"
#include "ontology/inputsample.h"
#include "tests/support/fixtures.h"
#include "tests/support/treeliteral.h"
#include "viewer/openedfile.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Test::fixturePath;
using Sorvik::Viewer::OpenedFile;
using Zem::Ontology::InputFormat;

class TestOpenedFile : public QObject
{
    Q_OBJECT
private slots:
    void tellsChartsInputsAndNeither_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("kind");
        // Fixtures of each format, then files that are none.
        QTest::newRow("krona") << "viewer/small.krona.txt" << QByteArray() << "krona";
        QTest::newRow("qiime") << "viewer/small.qiime.txt" << QByteArray() << "qiime";
        QTest::newRow("taxon ids") << "viewer/taxids.txt" << QByteArray() << "taxids";
        QTest::newRow("ids with counts, not Krona lines of one name") << "viewer/taxid-counts.txt" << QByteArray()
                                                                      << "taxid-counts";
        QTest::newRow("mg-taxa, not a qiime table") << "viewer/mgtaxa.txt" << QByteArray() << "mgtaxa";
        QTest::newRow("qiime table of counts, not mg-taxa")
            << "" << QByteArray("Taxon\tS1\tS2\nk__Bacteria\t3\t562\nk__Archaea\t1\t9606\n") << "qiime";
        QTest::newRow("krona with comments") << "" << QByteArray("# made by hand\n5\tBacteria\n7\tArchaea\tEury\n") << "krona";
        QTest::newRow("a chart") << "<chart>" << QByteArray() << "chart";
        QTest::newRow("an editor chart file") << "chart/annotated.pie" << QByteArray() << "unknown";
        QTest::newRow("empty") << "" << QByteArray() << "unknown";
        QTest::newRow("only comments") << "" << QByteArray("# nothing\n# here\n") << "unknown";
        QTest::newRow("binary") << "" << QByteArray("\x00\x01\x02\xff\xfe\n\x00\x00", 8) << "unknown";
        QTest::newRow("prose") << "" << QByteArray("Dear colleague,\nhere are the reads.\n") << "unknown";
        QTest::newRow("SQLite header cut short") << "" << QByteArray("SQLite form") << "unknown";
        QTest::newRow("missing") << "<missing>" << QByteArray() << "unknown";
        QTest::newRow("a folder") << "<folder>" << QByteArray() << "unknown";
    }

    void tellsChartsInputsAndNeither()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, kind);
        const QString fileName = prepare(file, bytes);
        const OpenedFile opened(fileName);
        switch (opened.getKind()) {
        case OpenedFile::Chart:
            QCOMPARE(QStringLiteral("chart"), kind);
            QVERIFY(!opened.getFormat());
            break;
        case OpenedFile::Input:
            QVERIFY(opened.getFormat());
            QCOMPARE(opened.getFormat()->word, kind);
            break;
        case OpenedFile::Unknown:
            QCOMPARE(QStringLiteral("unknown"), kind);
            QVERIFY(!opened.getFormat());
            break;
        }
    }

    void detectionSaysWhyNot()
    {
        QStringList whyNot;
        const Zem::Ontology::InputSample sample(QStringList{"Dear colleague,", "here are the reads."});
        QVERIFY(!InputFormat::detect(sample, &whyNot));
        // One reason for every format that can be told from its content.
        int checked = 0;
        for (const InputFormat& format : InputFormat::all())
            checked += format.check ? 1 : 0;
        QCOMPARE(whyNot.size(), checked);
        QVERIFY2(whyNot.contains(QStringLiteral("not Krona text (line 1: 'Dear colleague,' is not a count)")),
                 qPrintable(whyNot.join('\n')));
        QVERIFY(!InputFormat::detect(Zem::Ontology::InputSample(QStringList()), &whyNot));
        QCOMPARE(whyNot, QStringList{"it is empty"});
    }

    void inputProblemsNameTheFileAndTheReason_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("problem");
        QTest::newRow("none chosen") << "krona" << "<none>" << QByteArray()
                                     << "No input file was chosen: choose Krona text to make the pie chart from.";
        QTest::newRow("missing") << "krona" << "<missing>" << QByteArray() << "FILE doesn't exist.";
        QTest::newRow("folder") << "qiime" << "<folder>" << QByteArray() << "FILE is a folder, not a file.";
        QTest::newRow("empty") << "taxids" << "" << QByteArray() << "FILE is empty.";
        QTest::newRow("another format") << "taxids" << "viewer/small.krona.txt" << QByteArray()
                                        << "FILE doesn't look like a list of NCBI taxon ids, one per line: line 2: "
                                           "'Bacteria' is not a taxon id.";
        QTest::newRow("good krona") << "krona" << "viewer/small.krona.txt" << QByteArray() << "";
        QTest::newRow("good ids with a stray header") << "taxids" << "" << QByteArray("id\n1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n")
                                                     << "";
    }

    void inputProblemsNameTheFileAndTheReason()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, problem);
        const QString fileName = file == QLatin1String("<none>") ? QString() : prepare(file, bytes);
        problem.replace(QStringLiteral("FILE"), QDir::toNativeSeparators(fileName));
        QCOMPARE(OpenedFile::getInputProblem(*InputFormat::find(format), fileName), problem);
    }

private:
    // A fixture, a file of these bytes, or one of the special cases in angle brackets.
    QString prepare(const QString& file, const QByteArray& bytes)
    {
        if (file == QLatin1String("<chart>")) {
            const QString chart = dir.filePath(QStringLiteral("chart.piechart"));
            Sorvik::Test::writeTree(chart, QStringLiteral("root(a=A:3)"));
            return chart;
        }
        if (file == QLatin1String("<missing>"))
            return dir.filePath(QStringLiteral("missing.txt"));
        if (file == QLatin1String("<folder>"))
            return dir.path();
        if (!file.isEmpty())
            return fixturePath(file);
        const QString written = dir.filePath(QStringLiteral("input%1.txt").arg(++files));
        QFile out(written);
        if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(written));
        return written;
    }

    QTemporaryDir dir;
    int files = 0;
};

QTEST_MAIN(TestOpenedFile)
#include "tst_openedfile.moc"
