#include "resources/resources.h"
#include "viewer/charthtml.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Viewer::ChartHtml;
using Sorvik::Viewer::ChartTree;
using Sorvik::Viewer::ColourMap;
using Sorvik::Viewer::Palette;

namespace {

// A tree whose nodes were not added depth first: root, Alpha, Beta, then Alpha's child Gamma.
ChartTree scattered()
{
    ChartTree tree;
    tree.add(ChartTree::none, QStringLiteral("root"), 0, 10);
    tree.add(0, QStringLiteral("Alpha"), 1, 6);
    tree.add(0, QStringLiteral("p__Beta"), 4, 4);
    tree.add(1, QStringLiteral("Gamma"), 5, 5);
    return tree;
}

// The data the page carries, as JSON.
QJsonObject dataOf(const QByteArray& page)
{
    const QByteArray open = "<script type=\"application/json\" id=\"sorvik-data\">";
    const int from = page.indexOf(open);
    const int to = page.indexOf("</script>", from);
    if (from < 0 || to < 0)
        return QJsonObject();
    return QJsonDocument::fromJson(page.mid(from + open.size(), to - from - open.size())).object();
}

QStringList strings(const QJsonValue& array)
{
    QStringList result;
    for (const QJsonValue& v : array.toArray())
        result << (v.isString() ? v.toString() : QString::number(v.toDouble()));
    return result;
}

} // namespace

class TestChartHtml : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Sorvik::initResources(); }

    void dataListsTheTreeDepthFirst()
    {
        const ChartTree tree = scattered();
        const ColourMap colours = ColourMap::assign(tree, Palette());
        ChartHtml page(tree, colours);
        page.setFirstSampleName(QStringLiteral("gut"));
        const QJsonObject data = QJsonDocument::fromJson(page.getData()).object();
        QCOMPARE(strings(data["names"]), QStringList({"root", "Alpha", "Gamma", "Beta"}));
        QCOMPARE(strings(data["children"]), QStringList({"2", "1", "0", "0"}));
        const QJsonObject sample = data["samples"].toArray().first().toObject();
        QCOMPARE(sample["name"].toString(), QStringLiteral("gut"));
        QCOMPARE(strings(sample["counts"]), QStringList({"0", "1", "5", "4"}));
        QCOMPARE(strings(sample["totals"]), QStringList({"10", "6", "5", "4"}));
        // Six hex digits a node, as the viewer paints it; the centre holds no hue of its own.
        const QString hex = data["colours"].toString();
        QCOMPARE(hex.size(), 24);
        QCOMPARE(QLatin1Char('#') + hex.mid(0, 6), Palette::contextGrey().name());
        QCOMPARE(QLatin1Char('#') + hex.mid(6, 6), colours.colourOf(1).name());
        QCOMPARE(QLatin1Char('#') + hex.mid(12, 6), colours.colourOf(3).name());
        QCOMPARE(QLatin1Char('#') + hex.mid(18, 6), colours.colourOf(2).name());
    }

    void viewSettingsAndCentreTravel()
    {
        const ChartTree tree = scattered();
        const ColourMap colours = ColourMap::assign(tree, Palette());
        ChartHtml page(tree, colours);
        page.setView(7, 1.5, false);
        page.setCentre(3);
        page.setRawNames(true);
        const QJsonObject data = QJsonDocument::fromJson(page.getData()).object();
        const QJsonObject view = data["view"].toObject();
        QCOMPARE(view["maxLevels"].toInt(), 7);
        QCOMPARE(view["minPercent"].toDouble(), 1.5);
        QCOMPARE(view["collapse"].toBool(), false);
        // Node 3 (Gamma) is third in depth-first order.
        QCOMPARE(view["centre"].toInt(), 2);
        QCOMPARE(strings(data["names"]).last(), QStringLiteral("p__Beta"));
    }

    void stringsCannotEndTheScript_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("a closing script tag") << "</script><script>alert(1)</script>";
        QTest::newRow("a comment opener") << "<!-- x";
        QTest::newRow("quotes and backslashes") << "a \"b\" \\c\\";
        QTest::newRow("control characters") << QStringLiteral("tab\there\nnew\x01line");
        QTest::newRow("line separators") << QString::fromUtf8("a\xE2\x80\xA8" "b\xE2\x80\xA9");
        QTest::newRow("letters of every script") << QString::fromUtf8("Ærø 大肠杆菌 \xF0\x9F\xA6\xA0");
    }

    void stringsCannotEndTheScript()
    {
        QFETCH(QString, text);
        const QByteArray json = ChartHtml::jsonString(text);
        QVERIFY(!json.contains('<'));
        QVERIFY(!json.contains('\n'));
        const QJsonDocument parsed = QJsonDocument::fromJson("[" + json + "]");
        QCOMPARE(parsed.array().first().toString(), text);
    }

    void pageNeedsNoNetwork()
    {
        ChartTree tree;
        tree.add(ChartTree::none, QStringLiteral("root"), 0, 3);
        tree.add(0, QStringLiteral("</script> <img src=\"http://example.org/x\">"), 3, 3);
        const ColourMap colours = ColourMap::assign(tree, Palette());
        ChartHtml page(tree, colours);
        page.setTitle(QStringLiteral("<Gut> & co"));
        const QByteArray html = page.toHtml();
        QVERIFY(html.startsWith("<!DOCTYPE html>"));
        QVERIFY(html.contains("<title>&lt;Gut&gt; &amp; co</title>"));
        // Nothing is fetched: no linked files, no sources, no address but the SVG namespace (the
        // names in the data are only ever shown as text).
        const QString outside = QString::fromUtf8(html).remove(QRegularExpression(QStringLiteral("id=\"sorvik-data\">[^<]*")));
        QVERIFY(!outside.contains(QLatin1String("<link")));
        QVERIFY(!QRegularExpression(QStringLiteral("\\ssrc\\s*=")).match(outside).hasMatch());
        QVERIFY(!outside.contains(QLatin1String("url(")));
        QCOMPARE(outside.count(QLatin1String("http")), outside.count(QLatin1String("http://www.w3.org/2000/svg")));
        // The script and style are built in and filled in; the name stays inside the data.
        QVERIFY(html.contains("function layout("));
        QVERIFY(html.contains(".slice {"));
        QVERIFY(!html.contains("{{"));
        QCOMPARE(html.count("</script>"), 2);
        QCOMPARE(strings(dataOf(html)["names"]).last(), tree.getName(1));
        QCOMPARE(dataOf(html)["title"].toString(), QStringLiteral("<Gut> & co"));
    }

    void samplesTravelTogether()
    {
        const ChartTree tree = scattered();
        const ColourMap colours = ColourMap::assign(tree, Palette());
        ChartHtml page(tree, colours);
        page.addSample({QStringLiteral("skin"), {0, 2}, {3, 2}});
        const QJsonArray samples = QJsonDocument::fromJson(page.getData()).object()["samples"].toArray();
        QCOMPARE(samples.size(), 2);
        // Depth-first, and 0 for the nodes the sample does not reach.
        QCOMPARE(strings(samples[1].toObject()["totals"]), QStringList({"3", "2", "0", "0"}));
    }

    void saveWritesAllOrNothing()
    {
        QTemporaryDir dir;
        const ChartTree tree = scattered();
        const ColourMap colours = ColourMap::assign(tree, Palette());
        const ChartHtml page(tree, colours);
        const QString missing = dir.filePath(QStringLiteral("gone/chart.html"));
        QVERIFY_EXCEPTION_THROWN(page.save(missing), ChartHtml::WriteException);
        QVERIFY(!QFileInfo::exists(missing));
        const QString good = dir.filePath(QStringLiteral("chart.html"));
        page.save(good);
        QFile file(good);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), page.toHtml());
    }
};

QTEST_MAIN(TestChartHtml)
#include "tst_charthtml.moc"
