#include "ontology/buildreport.h"

#include <QtTest>

using Zem::Ontology::BuildReport;

// The sentences a build's report gives the user, and how the reports of a build's parts add up.
class TestBuildReport : public QObject
{
    Q_OBJECT
private slots:
    void summary_data()
    {
        QTest::addColumn<qint64>("skipped");
        QTest::addColumn<QStringList>("unknown");
        QTest::addColumn<QStringList>("summary");
        QTest::newRow("nothing to say") << qint64(0) << QStringList() << QStringList();
        QTest::newRow("skipped lines, thousands spaced")
            << qint64(3) << QStringList()
            << QStringList{"skipped 3 of 1 204 lines (first: line 17: 'abc' is not a count)"};
        QTest::newRow("unknown ids, most reads first as placed")
            << qint64(0) << QStringList{"424242=1000", "12=2"}
            << QStringList{"1 002 reads had 2 unknown taxon ids (first: 424242, 12)"};
        QTest::newRow("more unknown ids than are named")
            << qint64(1) << QStringList{"11=6", "12=5", "13=4", "14=3", "15=2", "16=1"}
            << QStringList{"skipped 1 of 1 204 lines (first: line 17: 'abc' is not a count)",
                           "21 reads had 6 unknown taxon ids (first: 11, 12, 13, 14, 15, \u2026)"};
    }

    void summary()
    {
        QFETCH(qint64, skipped);
        QFETCH(QStringList, unknown);
        QFETCH(QStringList, summary);
        BuildReport report;
        report.linesRead = 1204;
        report.linesSkipped = skipped;
        report.firstSkip = QStringLiteral("line 17: 'abc' is not a count");
        for (const QString& entry : unknown) {
            const qint64 reads = entry.section('=', 1).toLongLong();
            report.unknownIds.push_back({entry.section('=', 0, 0), reads, false});
            report.unknownReads += reads;
        }
        QCOMPARE(report.getSummary(), summary);
        QCOMPARE(report.hasSkips(), skipped > 0);
    }

    // The input's report and the placement's become one: every figure adds up, and the first
    // skip named is the first input's.
    void partsAddUp()
    {
        BuildReport first;
        first.linesRead = 10;
        first.linesSkipped = 1;
        first.firstSkip = QStringLiteral("line 2: 'x' is not a count");
        BuildReport second;
        second.linesRead = 5;
        second.linesSkipped = 2;
        second.firstSkip = QStringLiteral("line 4: 'y' is not a count");
        second.mergedReads = 7;
        second.mergedIds = 2;
        second.unknownReads = 3;
        second.unknownIds.push_back({QStringLiteral("999"), 3, true});
        second.warnings << QStringLiteral("a note");
        first.add(second);
        QCOMPARE(first.getSummary(),
                 (QStringList{"skipped 3 of 15 lines (first: line 2: 'x' is not a count)",
                              "7 reads had 2 taxon ids that NCBI merged into others (counted under the new ids)",
                              "3 reads had 1 unknown taxon ids (first: 999)", "a note"}));
        QCOMPARE(first.getUnknownIdList(), QStringLiteral("999\t3 reads\tdeleted by NCBI\n"));
    }
};

QTEST_GUILESS_MAIN(TestBuildReport)
#include "tst_buildreport.moc"
