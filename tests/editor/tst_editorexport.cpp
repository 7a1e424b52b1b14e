#include "editor/mainwindow.h"
#include "editor/scene.h"
#include "nu/graphics/piecharttextitem.h"
#include "resources/resources.h"
#include "tests/support/charts.h"
#include "tests/support/editcharts.h"
#include "tests/support/fixtures.h"
#include "tests/support/scriptedprompter.h"
#include "viewer/piechartitem.h"

#include <QImage>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

using Sorvik::Edit::MainWindow;
using Sorvik::Edit::Scene;
using Sorvik::Test::fileContents;
using Sorvik::Test::sliceLabelled;

namespace {

const QString& tree = Sorvik::Test::lifeTree;

// The white margins of an image on each side: left, right, top, bottom.
QList<int> margins(const QImage& image)
{
    int left = image.width(), right = -1, top = image.height(), bottom = -1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == qRgb(255, 255, 255))
                continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    return {left, image.width() - 1 - right, top, image.height() - 1 - bottom};
}

} // namespace

// The editor's exports: even margins, texts kept as text in SVG and PDF.
class TestEditorExport : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Sorvik::initResources(); }

    void init()
    {
        dir = std::make_unique<QTemporaryDir>();
        prompter = std::make_shared<Sorvik::Test::ScriptedPrompter>();
        window = std::make_unique<MainWindow>();
        window->setPrompter(prompter);
        const auto chart = Sorvik::Test::chartOf(dir->filePath(QStringLiteral("chart.ontology")), tree, 5, 0.5);
        window->createPieChart(chart.get());
    }

    void pngHasEvenMargins_data()
    {
        QTest::addColumn<QString>("annotation");
        QTest::newRow("the chart alone") << QString();
        QTest::newRow("an arc text on a slice") << QStringLiteral("arc");
        QTest::newRow("a straight text far out") << QStringLiteral("straight");
    }

    void pngHasEvenMargins()
    {
        QFETCH(QString, annotation);
        Scene& scene = window->getScene();
        if (annotation == QLatin1String("arc"))
            scene.itemAddArcText(QPointF(), sliceLabelled(scene, QStringLiteral("Firmicutes")));
        else if (annotation == QLatin1String("straight"))
            scene.itemAddRectText(QPointF(260, -40));
        const QString png = dir->filePath(QStringLiteral("chart.png"));
        QVERIFY(window->exportPng(png, 2.0));
        const QImage image(png);
        const QList<int> m = margins(image);
        // The drawing's own extent decides the image: a turned slice's box would stick out.
        QVERIFY2(*std::max_element(m.begin(), m.end()) - *std::min_element(m.begin(), m.end()) <= 1,
                 qPrintable(QStringLiteral("%1 %2 %3 %4 in %5 x %6")
                                .arg(m[0]).arg(m[1]).arg(m[2]).arg(m[3]).arg(image.width()).arg(image.height())));
        QVERIFY(m[0] > 0);
    }

    void svgKeepsLabelsAsText()
    {
        Scene& scene = window->getScene();
        scene.itemAddArcText(QPointF(), sliceLabelled(scene, QStringLiteral("Firmicutes")));
        scene.itemAddRectText(QPointF(260, -40));
        const QString svg = dir->filePath(QStringLiteral("chart.svg"));
        QVERIFY(window->exportSvg(svg));
        QStringList texts;
        QXmlStreamReader xml(fileContents(svg));
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement() && xml.name() == QLatin1String("text"))
                texts << xml.readElementText(QXmlStreamReader::IncludeChildElements);
        }
        QVERIFY(!xml.hasError());
        // The slices' labels bent along their ring, the arc text (which takes its slice's label)
        // and the straight text, all as text.
        QVERIFY2(texts.contains(QStringLiteral("Bacteria [68.44%]")), qPrintable(texts.join(QLatin1Char('|'))));
        QVERIFY(texts.contains(QStringLiteral("Firmicutes [27.46%]")));
        QVERIFY(texts.contains(QStringLiteral("new text")));
        QVERIFY(fileContents(svg).count("<textPath ") >= 2);
    }

    void pdfKeepsLabelsAsText()
    {
        const QString pdf = dir->filePath(QStringLiteral("chart.pdf"));
        QVERIFY(window->exportPdf(pdf));
        const QByteArray content = fileContents(pdf);
        QVERIFY(content.startsWith("%PDF-"));
        QVERIFY(content.contains("/Font"));
        QVERIFY(prompter->shown.isEmpty());
    }

private:
    std::unique_ptr<QTemporaryDir> dir;
    std::shared_ptr<Sorvik::Test::ScriptedPrompter> prompter;
    std::unique_ptr<MainWindow> window;
};

QTEST_MAIN(TestEditorExport)
#include "tst_editorexport.moc"
