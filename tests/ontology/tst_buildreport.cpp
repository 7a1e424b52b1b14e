#include "ontology/buildreport.h"

#include <QtTest>

using Zem::Ontology::BuildReport;

// The sentences a build's report gives the user.
class TestBuildReport : public QObject
{
    Q_OBJECT
private slots:
    void summary_data()
    {
        QTest::addColumn<qint64>("read");
        QTest::addColumn<qint64>("skipped");
        QTest::addColumn<QStringList>("unplaced");
        QTest::addColumn<QStringList>("summary");
        QTest::newRow("nothing to say") << qint64(1204) << qint64(0) << QStringList() << QStringList();
        QTest::newRow("skipped lines, thousands spaced")
            << qint64(1204) << qint64(3) << QStringList()
            << QStringList{"skipped 3 of 1 204 lines (first: line 17: 'abc' is not a count)"};
        QTest::newRow("one unplaced read") << qint64(10) << qint64(0) << QStringList{"424242=1"}
                                           << QStringList{"skipped 1 read of 1 taxon id that the taxonomy does not know (424242)"};
        QTest::newRow("more unplaced ids than are named")
            << qint64(10) << qint64(0) << QStringList{"11=1000", "12=2", "13=3", "14=4", "15=5", "16=6"}
            << QStringList{"skipped 1 020 reads of 6 taxon ids that the taxonomy does not know (11, 12, 13, 14, 15, ...)"};
    }

    void summary()
    {
        QFETCH(qint64, read);
        QFETCH(qint64, skipped);
        QFETCH(QStringList, unplaced);
        QFETCH(QStringList, summary);
        BuildReport report;
        report.linesRead = read;
        report.linesSkipped = skipped;
        report.firstSkip = QStringLiteral("line 17: 'abc' is not a count");
        for (const QString& entry : unplaced)
            report.addUnplaced(entry.section('=', 0, 0), entry.section('=', 1).toLongLong());
        QCOMPARE(report.getSummary(), summary);
        QCOMPARE(report.hasSkips(), !summary.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestBuildReport)
#include "tst_buildreport.moc"
