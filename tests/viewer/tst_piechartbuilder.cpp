#include "ontology/builder.h"
#include "ontology/ontology.h"
#include "tests/ontology/sqlfile.h"
#include "tests/support/fixtures.h"
#include "tests/support/treeliteral.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>

using Sorvik::Viewer::PieChartBuilder;
using Sorvik::Viewer::PieChartItem;
using Zem::Ontology::Ontology;
using Zem::Ontology::Reader;

namespace {

std::vector<PieChartItem*> slicesOf(const PieChartItem* item)
{
    std::vector<PieChartItem*> result;
    for (QGraphicsItem* child : item->childItems()) {
        if (auto* slice = dynamic_cast<PieChartItem*>(child))
            result.push_back(slice);
    }
    return result;
}

// The chart as text: label, angle and start of every slice (degrees, counter-clockwise from
// the root's start), children in brackets.
QString describe(const PieChartItem* item, double start = 0)
{
    QString text = QStringLiteral("%1 %2@%3")
                       .arg(item->getText().text)
                       .arg(item->getAngle(), 0, 'g', 4)
                       .arg(start, 0, 'g', 4);
    const auto children = slicesOf(item);
    if (!children.empty()) {
        QStringList parts;
        for (const PieChartItem* child : children)
            parts << describe(child, start + child->getRot());
        text += QStringLiteral(" (") + parts.join(QStringLiteral(", ")) + QLatin1Char(')');
    }
    return text;
}

// What every chart must hold: rings 30 wide touching each other, each slice's share of the root
// total, and children side by side from their parent's start within its span.
void checkLayout(const PieChartItem* root)
{
    std::vector<std::pair<const PieChartItem*, int>> pending{{root, 1}};
    while (!pending.empty()) {
        const auto [item, depth] = pending.back();
        pending.pop_back();
        QCOMPARE(item->getRadius(), 30.0 * (depth - 1));
        QCOMPARE(item->getRadiusOffset(), 30.0);
        QVERIFY(std::abs(item->getAngle() - 360.0 * item->getTotal() / root->getTotal()) < 1e-9);
        double next = 0;
        for (const PieChartItem* child : slicesOf(item)) {
            QVERIFY(std::abs(child->getRot() - next) < 1e-9);
            next += child->getAngle();
            pending.emplace_back(child, depth + 1);
        }
        QVERIFY(next <= item->getAngle() + 1e-9);
    }
}

struct Chart
{
    std::unique_ptr<PieChartItem> root;
    QString text;
};

Chart build(const QString& file, int levels, double percent, const Reader::Position& start = Reader::Position())
{
    const Ontology ontology(file);
    PieChartBuilder builder(ontology, start);
    builder.setMaxLevels(levels);
    builder.setMinPercentage(percent);
    builder.read();
    Chart chart;
    chart.root = builder.takeRootItem();
    if (chart.root)
        chart.text = describe(chart.root.get());
    return chart;
}

// The same chart built the slow way: a copy attached one slice at a time, laid out again after
// every attachment.
std::unique_ptr<PieChartItem> stepwiseCopy(const PieChartItem* original)
{
    auto copy = std::make_unique<PieChartItem>(static_cast<int>(original->getTotal()));
    for (const PieChartItem* child : slicesOf(original))
        copy->addChild(stepwiseCopy(child).release());
    return copy;
}

} // namespace

class TestPieChartBuilder : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void chartOfATree_data();
    void chartOfATree();
    void labelFallsBackToNameThenId();
    void maxLevelsSetter();
    void deepChainIsCutAtTheLevelLimit();
    void startingInsideTheTree();
    void emptyChartHasNoRoot_data();
    void emptyChartHasNoRoot();
    void unreadableCountsDropTheirSlice();
    void hugeCountsKeepTheirShares();
    void layoutEqualsStepwiseLayout();
    void coloursPerFirstLevelSubtree();
    void sliceKeepsItsColourWhenSelected();
    void realTaxonomies_data();
    void realTaxonomies();

private:
    std::unique_ptr<QTemporaryDir> dir;
    QString file;
};

void TestPieChartBuilder::init()
{
    dir = std::make_unique<QTemporaryDir>();
    file = dir->filePath(QStringLiteral("chart.ontology"));
}

void TestPieChartBuilder::chartOfATree_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<int>("levels");
    QTest::addColumn<double>("percent");
    QTest::addColumn<QString>("chart");
    QTest::newRow("two halves") << "r(a:1 b:1)" << 10 << 0.0 << "r 360@0 (a 180@0, b 180@180)";
    QTest::newRow("gap for a parent's own count")
        << "r(a:1(c:3) b:4)" << 10 << 0.0 << "r 360@0 (a 180@0 (c 135@0), b 180@180)";
    QTest::newRow("root's own count") << "r:2(a:1 b:1)" << 10 << 0.0 << "r 360@0 (a 90@0, b 90@90)";
    QTest::newRow("names") << "r=Root(a=\"Homo sapiens\":1 b:1)" << 10 << 0.0
                           << "Root 360@0 (Homo sapiens 180@0, b 180@180)";
    QTest::newRow("one level is a disc") << "r(a:1(c:3) b:4)" << 1 << 0.0 << "r 360@0";
    QTest::newRow("two levels") << "r(a:1(c:3) b:4)" << 2 << 0.0 << "r 360@0 (a 180@0, b 180@180)";
    QTest::newRow("empty node dropped") << "r(a:0 b:2 c:2)" << 10 << 0.0 << "r 360@0 (b 180@0, c 180@180)";
    QTest::newRow("exactly the minimum kept") << "r(a:5 b:95)" << 10 << 5.0 << "r 360@0 (a 18@0, b 342@18)";
    QTest::newRow("below the minimum dropped with its subtree")
        << "r(a:499(x:499) b:99501)" << 10 << 1.0 << "r 360@0 (b 356.4@0)";
    QTest::newRow("4.99 percent against 5") << "r(a:499 b:9501)" << 10 << 5.0 << "r 360@0 (b 342@0)";
    QTest::newRow("decimal minimum met exactly") << "r(a:7 b:993)" << 10 << 0.7 << "r 360@0 (a 2.52@0, b 357.5@2.52)";
    QTest::newRow("deep slice below the minimum")
        << "r(a(b(c:1 d:99)))" << 10 << 2.0 << "r 360@0 (a 360@0 (b 360@0 (d 356.4@0)))";
    QTest::newRow("reader order, not count order") << "r(s:1 l:9)" << 10 << 0.0 << "r 360@0 (s 36@0, l 324@36)";
}

void TestPieChartBuilder::chartOfATree()
{
    QFETCH(QString, tree);
    QFETCH(int, levels);
    QFETCH(double, percent);
    QFETCH(QString, chart);
    Sorvik::Test::writeTree(file, tree, true, false);
    const Chart result = build(file, levels, percent);
    QVERIFY(result.root);
    QCOMPARE(result.text, chart);
    checkLayout(result.root.get());
}

void TestPieChartBuilder::labelFallsBackToNameThenId()
{
    QCOMPARE(PieChartBuilder::getName(QStringLiteral("9606"), {{"scientific name", "Homo sapiens"}, {"name", "human"}}),
             QStringLiteral("Homo sapiens"));
    QCOMPARE(PieChartBuilder::getName(QStringLiteral("9606"), {{"scientific name", ""}, {"name", "human"}}),
             QStringLiteral("human"));
    QCOMPARE(PieChartBuilder::getName(QStringLiteral("9606"), {{"count", "3"}}), QStringLiteral("9606"));
}

void TestPieChartBuilder::maxLevelsSetter()
{
    Sorvik::Test::writeTree(file, QStringLiteral("r:1"));
    const Ontology ontology(file);
    PieChartBuilder builder(ontology);
    QCOMPARE(builder.getMaxLevels(), 10);
    builder.setMaxLevels(4);
    builder.setMaxLevels(0);
    builder.setMaxLevels(-3);
    QCOMPARE(builder.getMaxLevels(), 4);
    builder.setMaxLevels(1000000);
    QCOMPARE(builder.getMaxLevels(), PieChartBuilder::levelLimit);
    QVERIFY(!builder.rootItem());
}

void TestPieChartBuilder::deepChainIsCutAtTheLevelLimit()
{
    QString tree = QStringLiteral("n0:1");
    for (int i = 1; i < 300; ++i)
        tree += QStringLiteral("(n%1:1").arg(i);
    tree += QString(299, QLatin1Char(')'));
    Sorvik::Test::writeTree(file, tree);
    const Chart chart = build(file, 1000000, 0);
    QVERIFY(chart.root);
    int depth = 1;
    for (const PieChartItem* item = chart.root.get(); !slicesOf(item).empty(); item = slicesOf(item).front())
        ++depth;
    QCOMPARE(depth, PieChartBuilder::levelLimit);
    checkLayout(chart.root.get());
}

void TestPieChartBuilder::startingInsideTheTree()
{
    Sorvik::Test::writeTree(file, QStringLiteral("r(a:1(c:2(e:1) d:1) b:4)"));
    const Chart whole = build(file, 10, 0);
    const PieChartItem* a = slicesOf(whole.root.get()).front();
    const PieChartItem* e = slicesOf(slicesOf(a).front()).front();
    QCOMPARE(e->getText().text, QStringLiteral("e"));
    const QList<Reader::Position> parents = e->getParentPositions();
    QCOMPARE(parents.size(), 3);
    QCOMPARE(parents.at(0), slicesOf(a).front()->getPosition());
    QCOMPARE(parents.at(1), a->getPosition());
    QCOMPARE(parents.at(2), whole.root->getPosition());
    QCOMPARE(whole.root->getPosition(), Reader::Position());

    const Chart inner = build(file, 10, 0, a->getPosition());
    QCOMPARE(inner.text, QStringLiteral("a 360@0 (c 216@0 (e 72@0), d 72@216)"));
    QCOMPARE(inner.root->getPosition(), a->getPosition());
}

void TestPieChartBuilder::emptyChartHasNoRoot_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<bool>("count");
    QTest::newRow("uncounted") << "r(a b)" << false;
    QTest::newRow("all counts zero") << "r(a:0 b:0)" << true;
    QTest::newRow("lone root without a count") << "r" << true;
}

void TestPieChartBuilder::emptyChartHasNoRoot()
{
    QFETCH(QString, tree);
    QFETCH(bool, count);
    Sorvik::Test::writeTree(file, tree, count);
    const Ontology ontology(file);
    PieChartBuilder builder(ontology);
    builder.read();
    QVERIFY(!builder.rootItem());
    QVERIFY(!builder.takeRootItem());
}

void TestPieChartBuilder::unreadableCountsDropTheirSlice()
{
    Sorvik::Test::writeTree(file, QStringLiteral("r(a:1 b:1 c:2)"));
    Sorvik::Test::execSql(file, {QStringLiteral("UPDATE nodes SET data = '{\"accumCount\":\"lots\"}' WHERE id = 'a'"),
                                 QStringLiteral("UPDATE nodes SET data = 'not json' WHERE id = 'b'")});
    const Chart chart = build(file, 10, 0);
    QCOMPARE(chart.text, QStringLiteral("r 360@0 (c 180@0)"));
}

void TestPieChartBuilder::hugeCountsKeepTheirShares()
{
    // Totals far beyond a 32-bit int: every count is scaled by the same factor, and a count
    // that scales to nothing keeps its slice with no angle.
    Sorvik::Test::writeTree(file, QStringLiteral("r(a:2500000000(x:2500000000) b:3000000000 c:1)"));
    const Chart chart = build(file, 10, 0);
    QVERIFY(chart.root);
    QCOMPARE(chart.text, QStringLiteral("r 360@0 (a 225@0 (x 112.5@0), b 135@225, c 0@360)"));
    checkLayout(chart.root.get());
    QVERIFY(chart.root->getTotal() <= std::numeric_limits<int>::max());
}

void TestPieChartBuilder::layoutEqualsStepwiseLayout()
{
    // Enough uneven counts that every angle is rounded.
    QString tree = QStringLiteral("r:3(");
    for (int i = 0; i < 12; ++i) {
        tree += QStringLiteral(" a%1:%2(").arg(i).arg(i % 5);
        for (int j = 0; j < 7; ++j)
            tree += QStringLiteral(" b%1x%2:%3(c%1x%2:%4)").arg(i).arg(j).arg((i * j) % 4).arg(j % 3 + 1);
        tree += QLatin1Char(')');
    }
    tree += QLatin1Char(')');
    Sorvik::Test::writeTree(file, tree);
    const Chart chart = build(file, 10, 0.2);
    const auto copy = stepwiseCopy(chart.root.get());
    std::vector<std::pair<const PieChartItem*, const PieChartItem*>> pending{{chart.root.get(), copy.get()}};
    int compared = 0;
    while (!pending.empty()) {
        const auto [built, stepwise] = pending.back();
        pending.pop_back();
        QCOMPARE(built->getAngle(), stepwise->getAngle());
        QCOMPARE(built->rotation(), stepwise->rotation());
        QCOMPARE(built->getRadius(), stepwise->getRadius());
        QCOMPARE(built->getOrder(), stepwise->getOrder());
        QCOMPARE(built->getCount(), stepwise->getCount());
        const auto a = slicesOf(built);
        const auto b = slicesOf(stepwise);
        QCOMPARE(a.size(), b.size());
        for (size_t i = 0; i < a.size(); ++i)
            pending.emplace_back(a[i], b[i]);
        ++compared;
    }
    QVERIFY(compared > 100);
}

void TestPieChartBuilder::coloursPerFirstLevelSubtree()
{
    Sorvik::Test::writeTree(file, QStringLiteral("r(a:1(a1:1(a2:1)) b:1(b1:1) c:1 d:1(d1:1))"));
    const Chart chart = build(file, 10, 0);
    QCOMPARE(chart.root->getColor(), QColor(Qt::white));
    QCOMPARE(chart.root->getBrush().color(), QColor(Qt::white));
    const auto first = slicesOf(chart.root.get());
    QCOMPARE(first.size(), size_t(4));
    for (size_t k = 0; k < first.size(); ++k) {
        const QColor colour = first[k]->getColor();
        // Each first-level subtree has its own hue, evenly spread: (k + 0.5) / n.
        QVERIFY2(std::abs(colour.hslHueF() - (k + 0.5) / 4) < 0.01, qPrintable(colour.name()));
        QVERIFY(std::abs(colour.lightnessF() - 0.5) < 0.01);
        QVERIFY(std::abs(colour.hslSaturationF() - 1.0) < 0.01);
        // Further out the same hue, lighter by one step of (0.9 - 0.5) / 4 levels per ring.
        double lightness = colour.lightnessF();
        for (auto slices = slicesOf(first[k]); !slices.empty(); slices = slicesOf(slices.front())) {
            const QColor outer = slices.front()->getColor();
            QVERIFY(std::abs(outer.hslHueF() - colour.hslHueF()) < 0.01);
            QVERIFY2(std::abs(outer.lightnessF() - lightness - 0.1) < 0.01, qPrintable(outer.name()));
            lightness = outer.lightnessF();
            QCOMPARE(slices.front()->getBrush().color(), outer);
        }
    }
}

void TestPieChartBuilder::sliceKeepsItsColourWhenSelected()
{
    PieChartItem slice(5);
    slice.setAngle(360);
    slice.setColor(QColor(Qt::blue));
    slice.setSelected(true);
    QImage image(80, 80, QImage::Format_ARGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.translate(40, 40);
        slice.paint(&painter, nullptr, nullptr);
    }
    QCOMPARE(image.pixelColor(40, 40), QColor(Qt::yellow));
    QCOMPARE(slice.getBrush().color(), QColor(Qt::blue));
    QCOMPARE(slice.getColor(), QColor(Qt::blue));
    QCOMPARE(slice.getPen().style(), Qt::NoPen);
    slice.setSelected(false);
    // Selection needs a scene; without one the slice paints in its own colour.
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.translate(40, 40);
        slice.paint(&painter, nullptr, nullptr);
    }
    QCOMPARE(image.pixelColor(40, 40), QColor(Qt::blue));
}

void TestPieChartBuilder::realTaxonomies_data()
{
    QTest::addColumn<QString>("nodes");
    const QString real = Sorvik::Test::realDataPath(QStringLiteral("ncbi"));
    if (real.isEmpty())
        QSKIP("no real data beside this checkout");
    for (const QString& name : QDir(real).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        QTest::newRow(qPrintable(name)) << QDir(real).filePath(name + QStringLiteral("/nodes.dmp"));
}

void TestPieChartBuilder::realTaxonomies()
{
    // Every taxon of a real dump counted once: real shapes of tree, at the viewer's settings and
    // at the widest ones.
    QFETCH(QString, nodes);
    QFile dump(nodes);
    QVERIFY(dump.open(QIODevice::ReadOnly));
    Zem::Ontology::Builder builder(file);
    QList<QPair<QString, QString>> links;
    QString root;
    while (!dump.atEnd()) {
        const QList<QByteArray> fields = dump.readLine().split('|');
        if (fields.size() < 2)
            continue;
        const QString id = QString::fromLatin1(fields.at(0).trimmed());
        const QString parent = QString::fromLatin1(fields.at(1).trimmed());
        if (id == parent)
            root = id;
        else
            links.append({parent, id});
    }
    if (root.isEmpty())
        QSKIP("dump without a root");
    builder.addRoot(root);
    builder.addData(root, QStringLiteral("count"), QStringLiteral("1"));
    for (const auto& link : links) {
        builder.addChild(link.first, link.second);
        builder.addData(link.second, QStringLiteral("count"), QStringLiteral("1"));
    }
    builder.count(true);
    builder.build();
    for (const auto& limits : {qMakePair(5, 0.5), qMakePair(10, 0.0)}) {
        const Chart chart = build(file, limits.first, limits.second);
        QVERIFY(chart.root);
        QCOMPARE(chart.root->getAngle(), 360.0);
        checkLayout(chart.root.get());
    }
}

QTEST_MAIN(TestPieChartBuilder)
#include "tst_piechartbuilder.moc"
