#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"
#include "ontology/taxonomychanges.h"
#include "ontology/taxonplacement.h"
#include "tests/support/treeliteral.h"
#include "tests/support/treetext.h"

#include <QtTest>

using namespace Zem::Ontology;
using Zem::Ncbi::TaxonomyChanges;
using Zem::Ncbi::TaxonPlacement;
using namespace Sorvik::Test;

class TestTaxonPlacement : public QObject
{
    Q_OBJECT
private slots:
    void everyReadIsPlaced_data()
    {
        QTest::addColumn<QString>("counts");
        QTest::addColumn<QString>("tree");
        // "reads/ids" of the merged and of the unknown ids, then the unknown ids as "id:reads",
        // with "d" for those NCBI deleted.
        QTest::addColumn<QString>("merged");
        QTest::addColumn<QString>("unknown");
        QTest::addColumn<QString>("unknownIds");
        const QString tree = QStringLiteral("root:0(Bacteria:0(\"Escherichia coli\":%1) \"Homo sapiens\":%2%3)");
        QTest::newRow("known ids only") << "562:3 9606:2" << tree.arg(3).arg(2).arg("") << "0/0" << "0/0" << "";
        QTest::newRow("a merged id counts under its new id, with the reads there already")
            << "12:4 562:1 13:2" << tree.arg(5).arg(2).arg("") << "6/2" << "0/0" << "";
        QTest::newRow("merged into an id the tree lacks is unknown")
            << "14:2 562:1" << QStringLiteral("root:0(Bacteria:0(\"Escherichia coli\":1) \"Unknown taxon ids\":2)") << "0/0" << "2/1" << "14:2";
        QTest::newRow("a deleted id is unknown") << "99:3 9606:1" << QStringLiteral("root:0(\"Homo sapiens\":1 \"Unknown taxon ids\":3)")
                                                 << "0/0" << "3/1" << "99:3d";
        QTest::newRow("taxid 0 is unclassified") << "0:5 562:1" << QStringLiteral("root:0(Bacteria:0(\"Escherichia coli\":1) unclassified:5)") << "0/0"
                                                 << "0/0" << "";
        QTest::newRow("unclassified reads of the source and taxid 0 add up")
            << "unclassified:2 0:3 562:1" << QStringLiteral("root:0(Bacteria:0(\"Escherichia coli\":1) unclassified:5)") << "0/0" << "0/0" << "";
        QTest::newRow("reads on the root stay there")
            << "1:2 562:1" << QStringLiteral("root:2(Bacteria:0(\"Escherichia coli\":1))") << "0/0" << "0/0" << "";
        QTest::newRow("zero counts are no reads") << "555:0 562:1" << QStringLiteral("root:0(Bacteria:0(\"Escherichia coli\":1))")
                                                  << "0/0" << "0/0" << "";
        QTest::newRow("most reads first, then by id as a number")
            << "300:1 20:1 1000:5 abc:1" << QStringLiteral("root:0(\"Unknown taxon ids\":8)") << "0/0" << "8/4"
            << "1000:5 20:1 300:1 abc:1";
        QTest::newRow("an input id spelled unknown joins the others")
            << "unknown:2 123:1" << QStringLiteral("root:0(\"Unknown taxon ids\":3)") << "0/0" << "3/2" << "unknown:2 123:1";
        QTest::newRow("every kind at once")
            << "12:1 99:2 0:3 4242:4 562:5"
            << QStringLiteral("root:0(Bacteria:0(\"Escherichia coli\":6) unclassified:3 \"Unknown taxon ids\":6)") << "1/1"
            << "6/2" << "4242:4 99:2d";
    }

    void everyReadIsPlaced()
    {
        QFETCH(QString, counts);
        QFETCH(QString, tree);
        QFETCH(QString, merged);
        QFETCH(QString, unknown);
        QFETCH(QString, unknownIds);
        BuilderSource builder(QStringLiteral("unused.piechart"));
        buildTree(builder, QStringLiteral("1=root(2=Bacteria(562=\"Escherichia coli\") 9606=\"Homo sapiens\")"));
        qint64 reads = 0;
        for (const QString& pair : counts.split(QLatin1Char(' '))) {
            builder.addData(pair.section(QLatin1Char(':'), 0, 0), NodeKey::count, pair.section(QLatin1Char(':'), 1));
            reads += pair.section(QLatin1Char(':'), 1).toLongLong();
        }
        TaxonomyChanges changes;
        changes.addMerged(12, 562);
        changes.addMerged(13, 9606);
        changes.addMerged(14, 777);
        changes.addDeleted(99);

        BuildReport report;
        TaxonPlacement(builder).place(changes, report);
        builder.count(true);

        QCOMPARE(describeTree(builder), tree);
        QCOMPARE(builder.getRoot()->data.value(NodeKey::accumCount).toLongLong(), reads);
        QCOMPARE(QStringLiteral("%1/%2").arg(report.mergedReads).arg(report.mergedIds), merged);
        QCOMPARE(QStringLiteral("%1/%2").arg(report.unknownReads).arg(report.unknownIds.size()), unknown);
        QStringList ids;
        for (const BuildReport::UnknownId& id : report.unknownIds)
            ids << QStringLiteral("%1:%2%3").arg(id.id).arg(id.reads).arg(id.deleted ? "d" : "");
        QCOMPARE(ids.join(QLatin1Char(' ')), unknownIds);
    }

    void summary_data()
    {
        QTest::addColumn<int>("unknownIds");
        QTest::addColumn<QStringList>("summary");
        QTest::newRow("nothing to say") << 0 << QStringList();
        QTest::newRow("all ids shown") << 2
                                       << QStringList{"1 234 reads had 2 taxon ids that NCBI merged into others (counted "
                                                      "under the new ids)",
                                                      "12 345 reads had 2 unknown taxon ids (first: 1001, 1002)"};
        QTest::newRow("five shown, the rest elided")
            << 6
            << QStringList{"1 234 reads had 2 taxon ids that NCBI merged into others (counted under the new ids)",
                           QStringLiteral("12 345 reads had 6 unknown taxon ids (first: 1001, 1002, 1003, 1004, 1005, \u2026)")};
    }

    void summary()
    {
        QFETCH(int, unknownIds);
        QFETCH(QStringList, summary);
        BuildReport report;
        if (unknownIds > 0) {
            report.mergedReads = 1234;
            report.mergedIds = 2;
            report.unknownReads = 12345;
        }
        for (int i = 1; i <= unknownIds; ++i)
            report.unknownIds.push_back({QString::number(1000 + i), i, i == 1});
        QCOMPARE(report.getSummary(), summary);
        if (unknownIds > 0)
            QVERIFY(report.getUnknownIdList().startsWith(QStringLiteral("1001\t1 reads\tdeleted by NCBI\n1002\t2 reads\n")));
    }
};

QTEST_GUILESS_MAIN(TestTaxonPlacement)
#include "tst_taxonplacement.moc"
