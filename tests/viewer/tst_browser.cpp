#include "ontology/ontology.h"
#include "tests/support/charts.h"
#include "viewer/browser.h"
#include "viewer/browsermodel.h"
#include "viewer/charttree.h"
#include "viewer/piechartitem.h"

#include <QListWidget>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTreeView>
#include <QtTest>

using Sorvik::Viewer::Browser;
using Sorvik::Viewer::BrowserModel;
using Sorvik::Viewer::PieChartItem;

namespace {

// The shown tree as text: name and percentage of every row, children in brackets.
QString describe(const QAbstractItemModel& model, const QModelIndex& parent = QModelIndex())
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, BrowserModel::NameColumn, parent);
        QString text = index.data().toString() + QLatin1Char(' ')
                     + model.index(row, BrowserModel::PercentageColumn, parent).data().toString();
        if (model.rowCount(index) > 0)
            text += QStringLiteral(" (") + describe(model, index) + QLatin1Char(')');
        rows << text;
    }
    return rows.join(QStringLiteral(", "));
}

const QString tree =
    QStringLiteral("root(b=Bacteria:10(f=Firmicutes:30(l=Lactobacillus:20) p=Proteobacteria:15) "
                   "a=Archaea:20(e=Euryarchaeota:5) v=Viruses:0)");

} // namespace

class TestBrowser : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        browser.reset();
        chart = Sorvik::Test::chartOf(dir.filePath(QStringLiteral("chart.piechart")), tree);
        browser = std::make_unique<Browser>();
        browser->setPieChart(chart.get());
    }

    void listsTheDrawnSlicesByCount()
    {
        // Largest first at every level; the empty Viruses have no slice and no row.
        QCOMPARE(describe(*model()), QStringLiteral("root 100.00 (Bacteria 75.00 (Firmicutes 50.00 (Lactobacillus 20.00), "
                                                    "Proteobacteria 15.00), Archaea 25.00 (Euryarchaeota 5.00))"));
        QVERIFY(browser->getTreeView()->isExpanded(model()->index(0, 0)));
    }

    void filterFindsTaxaWithTheirAncestors_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("shown");
        QTest::newRow("deep match keeps its path")
            << "lacto" << "root 100.00 (Bacteria 75.00 (Firmicutes 50.00 (Lactobacillus 20.00)))";
        QTest::newRow("parent and child both match") << "ARCH" << "root 100.00 (Archaea 25.00 (Euryarchaeota 5.00))";
        QTest::newRow("no match") << "Homo" << "";
    }

    void filterFindsTaxaWithTheirAncestors()
    {
        QFETCH(QString, filter);
        QFETCH(QString, shown);
        // The selection outlives the filter.
        const QString proteo = idOf(QStringLiteral("Proteobacteria"));
        browser->slotSelectItem(proteo);
        QSignalSpy selected(browser.get(), &Browser::signalSelectedItem);
        browser->setFilterText(filter);
        QCOMPARE(describe(*model()), shown);
        browser->setFilterText(QString());
        QVERIFY(describe(*model()).contains(QStringLiteral("Proteobacteria")));
        QCOMPARE(browser->getSelectedId(), proteo);
        QCOMPARE(browser->getTreeView()->currentIndex().data().toString(), QStringLiteral("Proteobacteria"));
        QCOMPARE(selected.count(), 0);
    }

    void selectionTravelsOneWayOnly()
    {
        QSignalSpy selected(browser.get(), &Browser::signalSelectedItem);
        const QString firmicutes = idOf(QStringLiteral("Firmicutes"));
        browser->slotSelectItem(firmicutes);
        QCOMPARE(browser->getTreeView()->currentIndex().data().toString(), QStringLiteral("Firmicutes"));
        browser->slotSelectItem(QString());
        QVERIFY(browser->getTreeView()->selectionModel()->selectedRows().isEmpty());
        QCOMPARE(selected.count(), 0);

        // The user's choice goes out once.
        browser->getTreeView()->setCurrentIndex(find(QStringLiteral("Archaea")));
        QCOMPARE(selected.count(), 1);
        QCOMPARE(selected.first().first().toString(), idOf(QStringLiteral("Archaea")));
    }

    // With two rings drawn, the filter lists the rest of the chart's matches below the tree.
    void filterSearchesTheWholeChart_data()
    {
        QTest::addColumn<QString>("literal");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QStringList>("undrawn");
        QTest::addColumn<QString>("notice");
        QTest::newRow("a deep match") << tree << "lacto" << QStringList{"Lactobacillus"} << "";
        QTest::newRow("drawn matches are not listed again") << tree << "bacteria" << QStringList{"Proteobacteria"} << "";
        QTest::newRow("largest first") << tree << "A" << QStringList{"Lactobacillus", "Proteobacteria", "Euryarchaeota"}
                                       << "";
        QTest::newRow("empty taxa are never drawn") << tree << "viruses" << QStringList() << "No taxon matches \u201cviruses\u201d.";
        QTest::newRow("nothing at all") << tree << "Homo" << QStringList() << "No taxon matches \u201cHomo\u201d.";
        QTest::newRow("only drawn matches") << tree << "archaea" << QStringList() << "";
        QTest::newRow("one name in two places")
            << QStringLiteral("root(a=A:1(x=X(u1=unclassified:3)) b=B:1(y=Y(u2=unclassified:2)))") << "uncl"
            << QStringList{"unclassified (in X)", "unclassified (in Y)"} << "";
    }

    void filterSearchesTheWholeChart()
    {
        QFETCH(QString, literal);
        QFETCH(QString, filter);
        QFETCH(QStringList, undrawn);
        QFETCH(QString, notice);
        const QString file = dir.filePath(QStringLiteral("whole.piechart"));
        browser->setPieChart(nullptr);
        chart = Sorvik::Test::chartOf(file, literal, 2);
        browser->setPieChart(chart.get());
        auto whole = std::make_shared<const Sorvik::Viewer::ChartTree>(
            Sorvik::Viewer::ChartTree::read(Zem::Ontology::Ontology(file)));
        browser->setChartTree(whole);
        browser->setFilterText(filter);
        QStringList listed;
        QListWidget* list = browser->getUndrawnList();
        for (int row = 0; row < list->count(); ++row)
            listed << list->item(row)->text();
        QCOMPARE(listed, undrawn);
        QCOMPARE(browser->getFilterNotice(), notice);

        // Choosing one asks for its node; drawn nodes have their slice's id.
        if (!undrawn.isEmpty()) {
            QSignalSpy chosen(browser.get(), &Browser::signalNodeChosen);
            emit list->itemActivated(list->item(0));
            QCOMPARE(chosen.count(), 1);
            const int node = chosen.first().first().toInt();
            QVERIFY(listed.first().startsWith(whole->getName(node)));
            QVERIFY(browser->getDrawnId(node).isEmpty());
        }
        QCOMPARE(browser->getDrawnId(0), chart->getId());
    }

private:
    const QAbstractItemModel* model() const { return browser->getTreeView()->model(); }
    QModelIndex find(const QString& name) const
    {
        const QModelIndexList found =
            model()->match(model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? QModelIndex() : found.first();
    }
    QString idOf(const QString& name) const { return find(name).data(BrowserModel::IdRole).toString(); }

    QTemporaryDir dir;
    std::unique_ptr<PieChartItem> chart;
    std::unique_ptr<Browser> browser;
};

QTEST_MAIN(TestBrowser)
#include "tst_browser.moc"
