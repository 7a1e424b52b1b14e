#include "nu/graphics/placedtext.h"
#include "nu/graphics/sceneimage.h"
#include "nu/graphics/svgwriter.h"

#include <QGraphicsScene>
#include <QGraphicsSimpleTextItem>
#include <QPainter>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

using nu::graphics::PlacedText;
using nu::graphics::SceneImage;
using nu::graphics::SvgWriter;

namespace {

// What a painting leaves in an SvgWriter of 200 x 100 pixels.
QByteArray painted(const std::function<void(QPainter&)>& paint)
{
    SvgWriter writer(QSize(200, 100));
    writer.setTitle(QStringLiteral("A & B"));
    QPainter painter(&writer);
    paint(painter);
    painter.end();
    return writer.getSvg();
}

// The elements of an SVG by name with their attributes and text, in document order; "bad svg"
// when it is no well-formed XML.
struct Element
{
    QString name;
    QXmlStreamAttributes attributes;
    QString text;
    int depth = 0;
};

QList<Element> elements(const QByteArray& svg)
{
    QList<Element> found;
    QList<int> open;
    QXmlStreamReader xml(svg);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            open.append(found.size());
            found.append({xml.name().toString(), xml.attributes(), QString(), open.size()});
        } else if (xml.isCharacters() && !open.isEmpty()) {
            found[open.last()].text += xml.text();
        } else if (xml.isEndElement()) {
            open.removeLast();
        }
    }
    if (xml.hasError())
        return {{QStringLiteral("bad svg"), {}, xml.errorString(), 0}};
    return found;
}

QList<Element> named(const QList<Element>& all, const QString& name)
{
    QList<Element> result;
    for (const Element& e : all) {
        if (e.name == name)
            result.append(e);
    }
    return result;
}

QFont labelFont()
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(10);
    return font;
}

} // namespace

class TestSvgWriter : public QObject
{
    Q_OBJECT
private slots:
    void shapesAreWrittenInImageCoordinates()
    {
        const QByteArray svg = painted([](QPainter& p) {
            p.translate(100, 50);
            p.scale(2, 2);
            p.setPen(Qt::NoPen);
            p.setBrush(QColor(0x11, 0x22, 0x33, 128));
            QPainterPath triangle;
            triangle.moveTo(0, 0);
            triangle.lineTo(10, 0);
            triangle.lineTo(0, 10);
            triangle.closeSubpath();
            p.drawPath(triangle);
        });
        const QList<Element> paths = named(elements(svg), QStringLiteral("path"));
        QCOMPARE(paths.size(), 1);
        // Mapped through the painter's transform; the closing line is the subpath's close.
        QCOMPARE(paths[0].attributes.value(QLatin1String("d")).toString(), QStringLiteral("M100 50L120 50L100 70Z"));
        QCOMPARE(paths[0].attributes.value(QLatin1String("fill")).toString(), QStringLiteral("#112233"));
        QCOMPARE(paths[0].attributes.value(QLatin1String("fill-opacity")).toString(), QStringLiteral("0.502"));
        QVERIFY(!paths[0].attributes.hasAttribute(QLatin1String("stroke")));
    }

    void strokesKeepTheirWidth_data()
    {
        QTest::addColumn<QPen>("pen");
        QTest::addColumn<QString>("width");
        // The painter scales by 3: a pen in scene units grows with it, a cosmetic one does not.
        QTest::newRow("two units") << QPen(Qt::red, 2) << "6";
        QTest::newRow("hairline") << QPen(QBrush(Qt::red), 0) << "1";
        QPen cosmetic(Qt::red, 2);
        cosmetic.setCosmetic(true);
        QTest::newRow("cosmetic two pixels") << cosmetic << "2";
    }

    void strokesKeepTheirWidth()
    {
        QFETCH(QPen, pen);
        QFETCH(QString, width);
        const QByteArray svg = painted([&](QPainter& p) {
            p.scale(3, 3);
            p.setPen(pen);
            p.setBrush(Qt::NoBrush);
            p.drawLine(QPointF(1, 1), QPointF(20, 10));
        });
        const QList<Element> paths = named(elements(svg), QStringLiteral("path"));
        QCOMPARE(paths.size(), 1);
        QCOMPARE(paths[0].attributes.value(QLatin1String("stroke-width")).toString(), width);
        QCOMPARE(paths[0].attributes.value(QLatin1String("fill")).toString(), QStringLiteral("none"));
    }

    void straightTextIsText()
    {
        const PlacedText text = PlacedText::straight(QStringLiteral("Firmicutes"), labelFont(), QTransform::fromTranslate(5, 7));
        const QByteArray svg = painted([&](QPainter& p) { text.draw(p, Qt::NoPen, QBrush(Qt::white)); });
        const QList<Element> texts = named(elements(svg), QStringLiteral("text"));
        QCOMPARE(texts.size(), 1);
        QCOMPARE(texts[0].text, QStringLiteral("Firmicutes"));
        QCOMPARE(texts[0].attributes.value(QLatin1String("fill")).toString(), QStringLiteral("#ffffff"));
        QVERIFY(texts[0].attributes.value(QLatin1String("transform")).startsWith(QLatin1String("matrix(1 0 0 1 5 7")));
        // No glyph outlines.
        QVERIFY(named(elements(svg), QStringLiteral("path")).isEmpty());
    }

    void bentTextRunsOnATextPath_data()
    {
        QTest::addColumn<double>("direction");
        QTest::addColumn<QString>("sweep");
        QTest::newRow("clockwise over the top") << 1.0 << "1";
        QTest::newRow("counter-clockwise underneath") << -1.0 << "0";
    }

    void bentTextRunsOnATextPath()
    {
        QFETCH(double, direction);
        QFETCH(QString, sweep);
        const PlacedText text =
            PlacedText::bent(QStringLiteral("Bacteroidetes"), labelFont(), 0.5, QPointF(-20, 3), 60, direction);
        const QByteArray svg = painted([&](QPainter& p) { text.draw(p, Qt::NoPen, QBrush(Qt::black)); });
        const QList<Element> all = elements(svg);
        const QList<Element> paths = named(all, QStringLiteral("textPath"));
        QCOMPARE(paths.size(), 1);
        QCOMPARE(paths[0].text, QStringLiteral("Bacteroidetes"));
        const QString id = paths[0].attributes.value(QLatin1String("http://www.w3.org/1999/xlink"), QLatin1String("href")).toString();
        QVERIFY(id.startsWith(QLatin1Char('#')));
        const auto arc = std::find_if(all.begin(), all.end(), [&](const Element& e) {
            return e.name == QLatin1String("path") && QLatin1Char('#') + e.attributes.value(QLatin1String("id")) == id;
        });
        QVERIFY(arc != all.end());
        // The baseline's circle: the radius less the baseline's offset inwards, the way the text runs.
        const QString d = arc->attributes.value(QLatin1String("d")).toString();
        const QString radius = QString::number(60 - 3 * direction);
        QVERIFY2(d.contains(QStringLiteral("A%1 %1 0 0 %2 ").arg(radius, sweep)), qPrintable(d));
        // The size drawn is the font's at the text's scale: 10 pt at half size.
        const Element& textElement = named(all, QStringLiteral("text")).first();
        const double size = textElement.attributes.value(QLatin1String("font-size")).toDouble();
        QVERIFY(std::abs(size - 5 * PlacedText::layoutDotsPerInch() / 72) < 1e-4);
    }

    void groupsCarryTheirTitle()
    {
        const QByteArray svg = painted([](QPainter& p) {
            const SvgWriter::Group group(p, QStringLiteral("Bacteria: 12 (5.00 %)"));
            p.fillRect(QRectF(0, 0, 5, 5), Qt::red);
            const SvgWriter::Group none(p, QString());
        });
        const QList<Element> all = elements(svg);
        const QList<Element> groups = named(all, QStringLiteral("g"));
        QCOMPARE(groups.size(), 1);
        const QList<Element> titles = named(all, QStringLiteral("title"));
        QCOMPARE(titles.size(), 2);
        QCOMPARE(titles[0].text, QStringLiteral("A & B"));
        QCOMPARE(titles[1].text, QStringLiteral("Bacteria: 12 (5.00 %)"));
        QCOMPARE(titles[1].depth, groups[0].depth + 1);
        QCOMPARE(named(all, QStringLiteral("rect")).size(), 1);
    }

    void groupsDoNothingOnOtherDevices()
    {
        QImage image(10, 10, QImage::Format_ARGB32);
        QPainter painter(&image);
        const SvgWriter::Group group(painter, QStringLiteral("title"));
        QVERIFY(!SvgWriter::drawText(painter, PlacedText(), QBrush()));
    }

    void awkwardTextStaysWellFormed_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("read");
        QTest::newRow("markup") << "<b>\"E. coli\" & co</b>" << "<b>\"E. coli\" & co</b>";
        QTest::newRow("control characters") << QStringLiteral("a\x01\x1f\tb") << "a\tb";
        QTest::newRow("carriage return") << "a\rb" << "a b";
        QTest::newRow("beyond the basic plane") << QString::fromUtf8("\xF0\x9F\xA6\xA0 microbe") << QString::fromUtf8("\xF0\x9F\xA6\xA0 microbe");
    }

    void awkwardTextStaysWellFormed()
    {
        QFETCH(QString, text);
        QFETCH(QString, read);
        const PlacedText placed = PlacedText::straight(text, labelFont(), QTransform());
        const QByteArray svg = painted([&](QPainter& p) {
            const SvgWriter::Group group(p, text);
            placed.draw(p, Qt::NoPen, QBrush(Qt::black));
            p.drawText(QPointF(3, 20), text);
        });
        const QList<Element> all = elements(svg);
        QVERIFY2(all.first().name != QLatin1String("bad svg"), qPrintable(all.first().text));
        // The painter's own text may come in several runs; the placed text is one.
        const QList<Element> texts = named(all, QStringLiteral("text"));
        QVERIFY(texts.size() >= 2);
        QCOMPARE(texts[0].text, read);
        QCOMPARE(named(all, QStringLiteral("title")).last().text, read);
    }

    void formatFollowsTheExtension_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("format");
        QTest::newRow("png") << "chart.png" << int(SceneImage::Format::Png);
        QTest::newRow("svg in capitals") << "CHART.SVG" << int(SceneImage::Format::Svg);
        QTest::newRow("pdf") << "dir.v2/chart.pdf" << int(SceneImage::Format::Pdf);
        QTest::newRow("jpeg") << "chart.jpg" << -1;
        QTest::newRow("no extension") << "chart" << -1;
        QTest::newRow("pdf as a folder") << "chart.pdf/x" << -1;
    }

    void formatFollowsTheExtension()
    {
        QFETCH(QString, name);
        QFETCH(int, format);
        if (format < 0)
            QVERIFY_EXCEPTION_THROWN(SceneImage::formatOf(name), SceneImage::UnknownFormatException);
        else
            QCOMPARE(int(SceneImage::formatOf(name)), format);
    }

    void sceneImagesKeepTextAsText()
    {
        QGraphicsScene scene;
        auto* label = scene.addSimpleText(QStringLiteral("Proteobacteria"), labelFont());
        label->setPos(10, 10);
        scene.addRect(QRectF(0, 0, 200, 60), QPen(Qt::black), QBrush(Qt::yellow));
        SceneImage image(scene, QRectF(0, 0, 200, 60));
        image.setSize(QSize(400, 120));
        image.setTitle(QStringLiteral("Sorvik chart"));
        const QList<Element> svg = elements(image.toSvg());
        QCOMPARE(named(svg, QStringLiteral("text")).size(), 1);
        QCOMPARE(named(svg, QStringLiteral("text")).first().text, QStringLiteral("Proteobacteria"));
        QCOMPARE(named(svg, QStringLiteral("svg")).first().attributes.value(QLatin1String("viewBox")).toString(),
                 QStringLiteral("0 0 400 120"));

        const QByteArray pdf = image.toPdf();
        QVERIFY(pdf.startsWith("%PDF-"));
        QVERIFY(pdf.trimmed().endsWith("%%EOF"));
        // Text in a PDF comes with the font it is set in; outlines would need none.
        QVERIFY(pdf.contains("/Font"));
        // A page as large as the image at 96 pixels to the inch: 400 x 120 pixels are 300 x 90 points.
        QVERIFY(pdf.contains("/MediaBox [0 0 300.000000 90.000000]"));
    }

    void saveLeavesAnUnwritableFileAsItWas()
    {
        QTemporaryDir dir;
        QGraphicsScene scene;
        scene.addRect(QRectF(0, 0, 10, 10));
        const SceneImage image(scene, QRectF(0, 0, 10, 10));
        const QString missing = dir.filePath(QStringLiteral("gone/chart.pdf"));
        QVERIFY_EXCEPTION_THROWN(image.save(missing, SceneImage::Format::Pdf), SceneImage::WriteException);
        QVERIFY(!QFileInfo::exists(missing));
        const QString good = dir.filePath(QStringLiteral("chart.pdf"));
        image.save(good, SceneImage::Format::Pdf);
        QVERIFY(QFile(good).size() > 100);
    }
};

QTEST_MAIN(TestSvgWriter)
#include "tst_svgwriter.moc"
