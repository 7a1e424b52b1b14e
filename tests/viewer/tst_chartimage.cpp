#include "tests/support/foldercase.h"
#include "tests/support/charts.h"
#include "nu/graphics/sceneimage.h"
#include "viewer/chartimage.h"
#include "viewer/chartlegend.h"
#include "ontology/ontology.h"
#include "tests/support/treeliteral.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

#include <QGraphicsScene>
#include <QPainter>
#include <QRegularExpression>
#include <QStyleOptionGraphicsItem>
#include <QXmlStreamReader>
#include <QtTest>

using Sorvik::Test::chartOf;
using Sorvik::Viewer::ChartImage;
using Sorvik::Viewer::PieChartItem;

namespace {

// The fill or stroke of every path of an SVG, as inherited from its groups ("bad svg" when it is none).
QStringList pathAttributes(const QByteArray& svg, QLatin1String name)
{
    QStringList values;
    QStringList inherited{QStringLiteral("none")};
    QXmlStreamReader xml(svg);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("g")) {
            const auto value = xml.attributes().value(name);
            inherited.append(value.isEmpty() ? inherited.last() : value.toString());
        } else if (xml.isEndElement() && xml.name() == QLatin1String("g")) {
            inherited.removeLast();
        } else if (xml.isStartElement() && xml.name() == QLatin1String("path")) {
            const auto own = xml.attributes().value(name);
            values.append(own.isEmpty() ? inherited.last() : own.toString());
        }
    }
    return xml.hasError() ? QStringList{QStringLiteral("bad svg")} : values;
}

// The fill colours of the filled paths of an SVG, labels (black) apart.
QStringList filledPaths(const QByteArray& svg)
{
    QStringList fills = pathAttributes(svg, QLatin1String("fill"));
    fills.removeAll(QStringLiteral("none"));
    fills.removeAll(QStringLiteral("#000000"));
    return fills;
}

} // namespace

class TestChartImage : public Sorvik::Test::FolderCase
{
    Q_OBJECT
private slots:
    void init()
    {
        start();
        file = path(QStringLiteral("chart.ontology"));
    }

    void svgHoldsOneFilledPathPerKeptSlice_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<int>("levels");
        QTest::addColumn<double>("percent");
        QTest::addColumn<int>("slices");
        QTest::newRow("viewer defaults") << Sorvik::Test::lifeTree << 5 << 0.5 << 17;
        QTest::newRow("a disc") << QStringLiteral("r:5") << 5 << 0.5 << 1;
    }

    void svgHoldsOneFilledPathPerKeptSlice()
    {
        QFETCH(QString, tree);
        QFETCH(int, levels);
        QFETCH(double, percent);
        QFETCH(int, slices);
        const auto root = chartOf(file, tree, levels, percent);
        QVERIFY(root);
        ChartImage image(*root);
        image.setSize(300);
        const QByteArray svg = image.toSvg();
        // The drawing's proportions, the longer side as asked.
        const QRegularExpressionMatch box =
            QRegularExpression(QStringLiteral("viewBox=\"0 0 (\\d+) (\\d+)\"")).match(QString::fromUtf8(svg));
        QVERIFY(box.hasMatch());
        QCOMPARE(std::max(box.captured(1).toInt(), box.captured(2).toInt()), 300);
        const QStringList fills = filledPaths(svg);
        QCOMPARE(fills.size(), slices);
        // The centre holds no hue.
        QCOMPARE(fills.count(QStringLiteral("#f2f2f2")), 1);
    }

    void pngHasEvenMargins_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<bool>("legend");
        QTest::addColumn<QString>("title");
        // Two halves round a white centre: a circle.
        QTest::newRow("round") << QStringLiteral("r(a:1 b:1)") << false << QString();
        // One slice with a deep subtree and a thin one: a lopsided drawing.
        QTest::newRow("lopsided") << QStringLiteral("r(a:9(b:9(c:9(d:9))) e:1)") << false << QString();
        QTest::newRow("with a legend") << QStringLiteral("r(a:3(x:2 y:1) b:1)") << true << QString();
        QTest::newRow("with a title") << QStringLiteral("r(a:3(x:2 y:1) b:1)") << false << QStringLiteral("Gut, day 3");
        QTest::newRow("with a long title") << QStringLiteral("r(a:1 b:1)") << true
                                           << QStringLiteral("A title far wider than the chart it stands above");
    }

    void pngHasEvenMargins()
    {
        QFETCH(QString, tree);
        QFETCH(bool, legend);
        QFETCH(QString, title);
        const auto root = chartOf(file, tree, 5, 0.5);
        ChartImage image(*root);
        image.setSize(400);
        image.setTitle(title);
        if (legend)
            image.setLegend(Sorvik::Viewer::ChartLegend({{Qt::red, QStringLiteral("a"), 75}, {Qt::blue, QStringLiteral("b"), 25}}));
        const QImage png = image.toImage();
        QCOMPARE(std::max(png.width(), png.height()), 400);
        // The drawing's extent: every pixel that is not the white background.
        int left = png.width(), right = -1, top = png.height(), bottom = -1;
        for (int y = 0; y < png.height(); ++y) {
            for (int x = 0; x < png.width(); ++x) {
                if (png.pixel(x, y) == qRgb(255, 255, 255))
                    continue;
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
        QVERIFY(right >= left);
        const int margins[] = {left, png.width() - 1 - right, top, png.height() - 1 - bottom};
        QVERIFY2(*std::max_element(std::begin(margins), std::end(margins)) - *std::min_element(std::begin(margins), std::end(margins)) <= 1,
                 qPrintable(QStringLiteral("%1 %2 %3 %4").arg(margins[0]).arg(margins[1]).arg(margins[2]).arg(margins[3])));
    }

    void svgKeepsTextsAndTellsEachSlice()
    {
        const auto root = chartOf(file, QStringLiteral("root=Life(b=Bacteria(f=Firmicutes:60 p=Proteobacteria:30) "
                                                       "v=Viruses:10)"), 5, 0.5);
        ChartImage image(*root);
        image.setTitle(QStringLiteral("Gut <3>"));
        const QByteArray svg = image.toSvg();
        QXmlStreamReader xml(svg);
        QStringList titles;
        QStringList texts;
        const int textPaths = svg.count("<textPath ");
        while (!xml.atEnd()) {
            xml.readNext();
            if (!xml.isStartElement())
                continue;
            if (xml.name() == QLatin1String("title"))
                titles << xml.readElementText();
            else if (xml.name() == QLatin1String("text"))
                texts << xml.readElementText(QXmlStreamReader::IncludeChildElements);
        }
        QVERIFY(!xml.hasError());
        // The document's title, then one tool tip per slice: its name, count and share.
        QCOMPARE(titles.value(0), QStringLiteral("Gut <3>"));
        QCOMPARE(titles.size(), 1 + 5);
        QVERIFY2(titles.contains(QStringLiteral("Firmicutes: 60 (60.00 %)")), qPrintable(titles.join('|')));
        QVERIFY(titles.contains(QStringLiteral("Life: 100 (100.00 %)")));
        // Labels are texts, bent ones on a path; none is drawn as outlines.
        QVERIFY2(texts.contains(QStringLiteral("Firmicutes")), qPrintable(texts.join('|')));
        QVERIFY(texts.contains(QStringLiteral("Gut <3>")));
        QVERIFY(textPaths >= 2);
        QVERIFY(!svg.contains("fill=\"#000000\" fill-rule"));
        QVERIFY(!svg.contains("fill=\"#ffffff\" fill-rule"));

        const QByteArray pdf = image.toPdf();
        QVERIFY(pdf.startsWith("%PDF-"));
        QVERIFY(pdf.contains("/Font"));
    }

    void fullRingHasNoSeam()
    {
        // With chains drawn ring by ring, a is a full ring round the centre.
        Sorvik::Test::writeTree(file, QStringLiteral("r(a:2(b:1))"));
        Sorvik::Viewer::PieChartBuilder builder{Zem::Ontology::Ontology(file)};
        builder.setCollapse(false);
        builder.read();
        const auto root = builder.takeRootItem();
        PieChartItem* ring = Sorvik::Test::slicesOf(root.get()).front();
        QCOMPARE(ring->getAngle(), 360.0);
        QImage image(200, 200, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.translate(100, 100);
        QStyleOptionGraphicsItem option;
        option.exposedRect = ring->boundingRect();
        ring->setTextShow(false);
        ring->paint(&painter, &option, nullptr);
        painter.end();
        // Across the ring at 0°, where the outline used to close the ring: the fill throughout.
        for (int x = 100 + 33; x <= 100 + 57; ++x) {
            for (int y = 99; y <= 100; ++y)
                QCOMPARE(image.pixelColor(x, y), ring->getColor());
        }
    }

    void thinSlicesAreNoDarkHairlines()
    {
        // At 0 %, b is a slice of a thousandth of a degree.
        const auto root = chartOf(file, QStringLiteral("r(a:400000 b:1 c:200000)"), 5, 0);
        QCOMPARE(int(Sorvik::Test::slicesOf(root.get()).size()), 3);
        // Every path is outlined in white, or not at all.
        const QStringList strokes = pathAttributes(ChartImage(*root).toSvg(), QLatin1String("stroke"));
        QVERIFY(strokes.size() >= 4);
        for (const QString& stroke : strokes)
            QVERIFY2(stroke == QLatin1String("none") || stroke == QLatin1String("#ffffff"), qPrintable(stroke));
    }

    void saveWritesNothingItCannotWriteWhole()
    {
        const auto root = chartOf(file, QStringLiteral("r(a:1 b:3)"), 5, 0.5);
        ChartImage image(*root);
        QVERIFY(QDir(dir->path()).mkdir(QStringLiteral("taken.png")));
        QVERIFY_EXCEPTION_THROWN(image.save(path(QStringLiteral("chart.svg.gz"))),
                                 nu::graphics::SceneImage::UnknownFormatException);
        QVERIFY_EXCEPTION_THROWN(image.save(path(QStringLiteral("missing/chart.png"))), nu::graphics::SceneImage::WriteException);
        // A file name that is a folder cannot be written; the folder is left alone.
        QVERIFY_EXCEPTION_THROWN(image.save(path(QStringLiteral("taken.png"))), nu::graphics::SceneImage::WriteException);
        QVERIFY(QFileInfo(path(QStringLiteral("taken.png"))).isDir());
        QCOMPARE(QDir(dir->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
                 (QStringList{"chart.ontology", "taken.png"}));
    }

    void chartStaysWhereItWas()
    {
        auto root = chartOf(file, QStringLiteral("r(a:1 b:3)"), 5, 0.5);
        QGraphicsScene scene;
        scene.addItem(root.get());
        root->setSelected(true);
        const QImage shown = ChartImage(*root).toImage();
        QCOMPARE(root->scene(), &scene);
        // Drawn from the scene it is shown in, selection included.
        QCOMPARE(shown.pixelColor(shown.width() / 2, shown.height() / 2), QColor(Qt::yellow));
        scene.removeItem(root.get());
    }

private:
    QString file;
};

QTEST_MAIN(TestChartImage)
#include "tst_chartimage.moc"
