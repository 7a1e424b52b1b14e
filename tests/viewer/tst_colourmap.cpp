#include "ontology/ontology.h"
#include "tests/support/foldercase.h"
#include "tests/support/treeliteral.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"
#include "viewer/piechartitem.h"

#include <QtTest>

using Sorvik::Viewer::ChartTree;
using Sorvik::Viewer::ColourMap;
using Sorvik::Viewer::Palette;
using Sorvik::Viewer::PieChartItem;

namespace {

const Palette::Kind kinds[] = {Palette::Kind::Soft, Palette::Kind::OkabeIto, Palette::Kind::TolBright,
                               Palette::Kind::TolMuted, Palette::Kind::Classic};

void paletteRows()
{
    QTest::addColumn<int>("kind");
    for (Palette::Kind kind : kinds)
        QTest::newRow(qPrintable(Palette(kind).getName())) << int(kind);
}

} // namespace

class TestColourMap : public Sorvik::Test::FolderCase
{
    Q_OBJECT
private slots:
    void init() { start(); }

    void firstBranchingLevel_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<QString>("level");
        QTest::newRow("the root branches") << "r(a:1 b:1)" << "a b";
        QTest::newRow("a chain, then a branch") << "r(x(y(a:1 b:1)))" << "a b";
        QTest::newRow("a taxon with counts of its own") << "r(x:4(a:1 b:1))" << "a b";
        // Unclassified reads beside one taxon do not make the root branch.
        QTest::newRow("unclassified beside one taxon") << "r(u=unclassified:5 x(a:1 b:1))" << "a b";
        // A taxon with 90 % of the reads: its small sibling gets a hue, and so do its children.
        QTest::newRow("a dominant taxon") << "r(big(a:50 b:40) small:10)" << "a b small";
        QTest::newRow("just below dominant") << "r(big(a:50 b:39) small:11)" << "big small";
        QTest::newRow("a dominant leaf") << "r(a:95 b:5)" << "a b";
        QTest::newRow("never branches") << "r(a(b:3))" << "b";
        QTest::newRow("a disc") << "r:5" << "";
        QTest::newRow("empty children") << "r(a:0 b:0 c:2)" << "c";
    }

    void firstBranchingLevel()
    {
        QFETCH(QString, tree);
        QFETCH(QString, level);
        const ChartTree chart = read(tree);
        QStringList names;
        for (int node : chart.getFirstBranchingLevel())
            names << chart.getName(node);
        names.sort();
        QCOMPARE(names.join(QLatin1Char(' ')), level);
    }

    void emptyRanksAreNamedAfterTheirTaxon()
    {
        const ChartTree chart = read(QStringLiteral("r(k=\"k  Bacteria\"(p=\"p  Firmicutes\"(f=f(g=g:2)) o=\"o__\":1))"));
        const auto named = [&chart](const QString& raw) {
            for (int i = 0; i < chart.size(); ++i) {
                if (chart.at(i).rawName == raw)
                    return chart.getName(i);
            }
            return QStringLiteral("missing");
        };
        QCOMPARE(named(QStringLiteral("k  Bacteria")), QStringLiteral("Bacteria"));
        QCOMPARE(named(QStringLiteral("g")), QStringLiteral("unclassified Firmicutes"));
        QCOMPARE(named(QStringLiteral("f")), QStringLiteral("unclassified Firmicutes"));
        QCOMPARE(named(QStringLiteral("o__")), QStringLiteral("unclassified Bacteria"));
        // f holds nothing of its own and one child: drawn as one with g.
        int f = ChartTree::none;
        for (int i = 0; i < chart.size(); ++i)
            f = chart.at(i).rawName == QLatin1String("f") ? i : f;
        QVERIFY(chart.isChain(f));
    }

    void keysPreferTaxonIds()
    {
        writeTree(QStringLiteral("1=root(2=Bacteria:3 x:1)"));
        const ChartTree chart = ChartTree::read(Zem::Ontology::Ontology(file()));
        QStringList keys;
        for (int i = 0; i < chart.size(); ++i)
            keys << chart.getKey(i);
        // Named as NCBI taxa: their ids are taxon ids. x has no name: its path is its key.
        QCOMPARE(keys, (QStringList{"taxid:1", "taxid:2", "path:x"}));
        QCOMPARE(chart.indexOfKey(QStringLiteral("taxid:2")), 1);
    }

    void firstLevelHuesDiffer_data() { paletteRows(); }

    void firstLevelHuesDiffer()
    {
        QFETCH(int, kind);
        const Palette palette(static_cast<Palette::Kind>(kind));
        const ChartTree chart = read(QStringLiteral("r(a:9(a1:1(a11:1) a2:1 a3:1) b:8(b1:1) c:7 d:6 e:5 f:4 g:3 h:2 i:1)"));
        const ColourMap colours = ColourMap::assign(chart, palette);
        QSet<QRgb> first;
        for (int node : chart.getFirstBranchingLevel())
            first.insert(colours.colourOf(node).rgb());
        QCOMPARE(first.size(), 9);
        QVERIFY(!colours.hasColour(0));
        // Below a taxon: lighter outward, and siblings apart.
        const auto colourOf = [&](const QString& path) {
            return colours.colourOf(chart.indexOfKey(QStringLiteral("path:") + path));
        };
        const QColor a = colourOf(QStringLiteral("a"));
        const QColor a1 = colourOf(QStringLiteral("a\ta1"));
        const QColor a11 = colourOf(QStringLiteral("a\ta1\ta11"));
        QVERIFY(a1.lightnessF() > a.lightnessF() - 0.04);
        QVERIFY(a11.lightnessF() > a.lightnessF());
        QVERIFY(colourOf(QStringLiteral("a\ta2")) != a1);
        QVERIFY(colourOf(QStringLiteral("a\ta2")) != colourOf(QStringLiteral("a\ta3")));
        // Shades keep to their taxon's side of the hue circle.
        const double turn = std::abs(a11.hslHueF() - a.hslHueF());
        QVERIFY2(std::min(turn, 1 - turn) < 0.13, qPrintable(a11.name() + a.name()));
    }

    void sameTreeSameColours()
    {
        const QString literal = QStringLiteral("r(a:3(x:1 y:2) b:2 c:1(z:1))");
        const ChartTree one = read(literal);
        const ChartTree two = read(literal);
        for (Palette::Kind kind : kinds)
            QCOMPARE(ColourMap::assign(one, Palette(kind)).byKey(one), ColourMap::assign(two, Palette(kind)).byKey(two));
    }

    void coloursTakenFromAnotherChart()
    {
        const ChartTree first = read(QStringLiteral("r(a:5(a1:1 a2:4) b:3 c:2)"));
        const QHash<QString, QColor> given = ColourMap::assign(first, Palette()).byKey(first);
        // The second sample shares a (and a1) and c; d and e are its own.
        const ChartTree second = read(QStringLiteral("r(c:9 d:4 a:2(a1:2) e:1)"), QStringLiteral("second.ontology"));
        const ColourMap colours = ColourMap::assign(second, Palette(), given);
        const QHash<QString, QColor> got = colours.byKey(second);
        for (const QString& shared : {"path:a", "path:a\ta1", "path:c"})
            QCOMPARE(got.value(shared), given.value(shared));
        // The others take colours the shared taxa do not hold.
        const QSet<QRgb> firstLevel{given.value("path:a").rgb(), given.value("path:b").rgb(), given.value("path:c").rgb()};
        QVERIFY(got.value("path:d") != got.value("path:e"));
        for (const QString& own : {"path:d", "path:e"}) {
            QVERIFY(got.value(own).isValid());
            QVERIFY(got.value(own) != got.value("path:a") && got.value(own) != got.value("path:c"));
        }
        QVERIFY(!firstLevel.contains(got.value("path:d").rgb()) || !firstLevel.contains(got.value("path:e").rgb()));
    }

    void unclassifiedIsAlwaysGrey()
    {
        const ChartTree chart =
            read(QStringLiteral("r(a:4 u=unclassified:3(u1:1) k=\"Unknown taxon ids\":2 b:1(n=unclassified:1))"));
        for (Palette::Kind kind : kinds) {
            const ColourMap colours = ColourMap::assign(chart, Palette(kind));
            int greys = 0;
            for (int i = 0; i < chart.size(); ++i)
                greys += colours.colourOf(i) == Palette::unassignedGrey();
            // unclassified with its child, the unknown ids, and b's unclassified reads.
            QCOMPARE(greys, 4);
            QVERIFY(colours.colourOf(chart.indexOfKey("path:a")) != Palette::unassignedGrey());
        }
    }

    void labelsContrastWithEveryColour_data() { paletteRows(); }

    void labelsContrastWithEveryColour()
    {
        QFETCH(int, kind);
        const Palette palette(static_cast<Palette::Kind>(kind));
        std::vector<QColor> fills{Palette::unassignedGrey(), Palette::othersGrey(), Palette::contextGrey()};
        for (const QColor& base : palette.baseColours(24)) {
            for (int depth = 0; depth < 8; ++depth) {
                for (int sibling = 0; sibling < 3; ++sibling)
                    fills.push_back(palette.shade(base, depth, sibling, 3));
            }
        }
        for (const QColor& fill : fills) {
            const QColor label = PieChartItem::getLabelColor(fill);
            const QColor other = label == QColor(Qt::black) ? QColor(Qt::white) : QColor(Qt::black);
            QVERIFY2(PieChartItem::contrast(label, fill) >= 4.5, qPrintable(fill.name()));
            QVERIFY(PieChartItem::contrast(label, fill) >= PieChartItem::contrast(other, fill));
        }
    }

    void paletteNames()
    {
        for (const QString& name : Palette::names())
            QCOMPARE(Palette::byName(name).getName(), name);
        QCOMPARE(Palette::byName(QStringLiteral("Okabe-Ito")).getKind(), Palette::Kind::OkabeIto);
        QVERIFY_EXCEPTION_THROWN(Palette::byName(QStringLiteral("rainbow")), Palette::UnknownPaletteException);
    }

private:
    QString file(const QString& name = QStringLiteral("chart.ontology")) const { return path(name); }
    void writeTree(const QString& literal, const QString& name = QStringLiteral("chart.ontology")) const
    {
        Sorvik::Test::writeTree(file(name), literal);
    }
    ChartTree read(const QString& literal, const QString& name = QStringLiteral("chart.ontology")) const
    {
        QFile::remove(file(name));
        writeTree(literal, name);
        return ChartTree::read(Zem::Ontology::Ontology(file(name)));
    }

};

QTEST_MAIN(TestColourMap)
#include "tst_colourmap.moc"
