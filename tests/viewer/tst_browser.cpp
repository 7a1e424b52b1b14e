#include "ontology/ontology.h"
#include "tests/support/treeliteral.h"
#include "viewer/browser.h"
#include "viewer/browsermodel.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTreeView>
#include <QtTest>

using Sorvik::Viewer::Browser;
using Sorvik::Viewer::BrowserModel;
using Sorvik::Viewer::PieChartBuilder;
using Sorvik::Viewer::PieChartItem;

namespace {

std::unique_ptr<PieChartItem> chartOf(const QTemporaryDir& dir, const QString& literal, double minPercent = 0)
{
    const QString file = dir.filePath(QStringLiteral("chart.piechart"));
    QFile::remove(file);
    Sorvik::Test::writeTree(file, literal);
    PieChartBuilder builder{Zem::Ontology::Ontology(file)};
    builder.setMinPercentage(minPercent);
    builder.read();
    return builder.takeRootItem();
}

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

QString idOf(const Browser& browser, const QString& name)
{
    const QAbstractItemModel* model = browser.getTreeView()->model();
    const QModelIndexList found = model->match(model->index(0, 0), Qt::DisplayRole, name, 1,
                                               Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? QString() : found.first().data(BrowserModel::IdRole).toString();
}

const QString tree =
    QStringLiteral("root(b=Bacteria:10(f=Firmicutes:30(l=Lactobacillus:20) p=Proteobacteria:15) "
                   "a=Archaea:20(e=Euryarchaeota:5) v=Viruses:0)");

} // namespace

class TestBrowser : public QObject
{
    Q_OBJECT
private slots:
    void listsTheDrawnSlicesByCount();
    void filterFindsTaxaWithTheirAncestors_data();
    void filterFindsTaxaWithTheirAncestors();
    void returnSelectsTheFirstMatch();
    void selectionTravelsOneWayOnly();
    void selectionSurvivesTheFilter();
    void emptyChartEmptiesTheTree();
};

void TestBrowser::listsTheDrawnSlicesByCount()
{
    QTemporaryDir dir;
    auto chart = chartOf(dir, tree);
    Browser browser;
    browser.setPieChart(chart.get());
    // Largest first at every level; the empty Viruses have no slice and no row.
    QCOMPARE(describe(*browser.getTreeView()->model()),
             QStringLiteral("root 100.00 (Bacteria 75.00 (Firmicutes 50.00 (Lactobacillus 20.00), "
                            "Proteobacteria 15.00), Archaea 25.00 (Euryarchaeota 5.00))"));
    QVERIFY(browser.getTreeView()->isExpanded(browser.getTreeView()->model()->index(0, 0)));
}

void TestBrowser::filterFindsTaxaWithTheirAncestors_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("shown");
    QTest::newRow("deep match keeps its path") << "lacto"
                                               << "root 100.00 (Bacteria 75.00 (Firmicutes 50.00 "
                                                  "(Lactobacillus 20.00)))";
    QTest::newRow("parent and child both match") << "ARCH"
                                             << "root 100.00 (Archaea 25.00 (Euryarchaeota 5.00))";
    QTest::newRow("no match") << "Homo" << "";
    QTest::newRow("undrawn taxon") << "Viruses" << "";
}

void TestBrowser::filterFindsTaxaWithTheirAncestors()
{
    QFETCH(QString, filter);
    QFETCH(QString, shown);
    QTemporaryDir dir;
    auto chart = chartOf(dir, tree);
    Browser browser;
    browser.setPieChart(chart.get());
    browser.setFilterText(filter);
    QCOMPARE(describe(*browser.getTreeView()->model()), shown);
    browser.setFilterText(QString());
    QVERIFY(describe(*browser.getTreeView()->model()).contains(QStringLiteral("Proteobacteria")));
}

void TestBrowser::returnSelectsTheFirstMatch()
{
    QTemporaryDir dir;
    auto chart = chartOf(dir, tree);
    Browser browser;
    browser.setPieChart(chart.get());
    QSignalSpy selected(&browser, &Browser::signalSelectedItem);
    QTest::keyClicks(browser.getFilterEdit(), QStringLiteral("bacteria"));
    QTest::keyClick(browser.getFilterEdit(), Qt::Key_Return);
    QCOMPARE(selected.count(), 1);
    // Bacteria comes before Proteobacteria, which is below it.
    QCOMPARE(selected.first().first().toString(), idOf(browser, QStringLiteral("Bacteria")));
}

void TestBrowser::selectionTravelsOneWayOnly()
{
    QTemporaryDir dir;
    auto chart = chartOf(dir, tree);
    Browser browser;
    browser.setPieChart(chart.get());
    QSignalSpy selected(&browser, &Browser::signalSelectedItem);

    const QString firmicutes = idOf(browser, QStringLiteral("Firmicutes"));
    browser.slotSelectItem(firmicutes);
    QCOMPARE(browser.getSelectedId(), firmicutes);
    QCOMPARE(browser.getTreeView()->currentIndex().data().toString(), QStringLiteral("Firmicutes"));
    browser.slotSelectItem(QString());
    QCOMPARE(browser.getSelectedId(), QString());
    QVERIFY(browser.getTreeView()->selectionModel()->selectedRows().isEmpty());
    QCOMPARE(selected.count(), 0);

    // The user's choice goes out once.
    const QAbstractItemModel* model = browser.getTreeView()->model();
    const QModelIndex archaea =
        model->match(model->index(0, 0), Qt::DisplayRole, QStringLiteral("Archaea"), 1, Qt::MatchRecursive).first();
    browser.getTreeView()->setCurrentIndex(archaea);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().toString(), idOf(browser, QStringLiteral("Archaea")));
}

void TestBrowser::selectionSurvivesTheFilter()
{
    QTemporaryDir dir;
    auto chart = chartOf(dir, tree);
    Browser browser;
    browser.setPieChart(chart.get());
    QSignalSpy selected(&browser, &Browser::signalSelectedItem);
    const QString proteo = idOf(browser, QStringLiteral("Proteobacteria"));
    browser.slotSelectItem(proteo);
    browser.setFilterText(QStringLiteral("Archaea"));
    browser.setFilterText(QString());
    QCOMPARE(browser.getSelectedId(), proteo);
    QCOMPARE(browser.getTreeView()->currentIndex().data().toString(), QStringLiteral("Proteobacteria"));
    QCOMPARE(selected.count(), 0);
}

void TestBrowser::emptyChartEmptiesTheTree()
{
    QTemporaryDir dir;
    auto chart = chartOf(dir, tree);
    Browser browser;
    browser.setPieChart(chart.get());
    browser.slotSelectItem(idOf(browser, QStringLiteral("Archaea")));
    browser.setPieChart(nullptr);
    QCOMPARE(browser.getTreeView()->model()->rowCount(), 0);
    QCOMPARE(browser.getSelectedId(), QString());
    browser.slotSelectItem(QStringLiteral("1"));
    QCOMPARE(browser.getSelectedId(), QString());
}

QTEST_MAIN(TestBrowser)
#include "tst_browser.moc"
