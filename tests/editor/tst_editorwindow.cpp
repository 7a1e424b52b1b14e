#include "editor/mainwindow.h"
#include "editor/view.h"
#include "nu/edit/handler.h"
#include "nu/edit/handlergeometry.h"
#include "nu/edit/propertieswidget.h"
#include "nu/edit/selectionshape.h"
#include "nu/graphics/arctextitem.h"
#include "nu/graphics/color.h"
#include "nu/graphics/geometry.h"
#include "nu/graphics/lineitem.h"
#include "nu/graphics/piecharttextitem.h"
#include "nu/graphics/recttextitem.h"
#include "ontology/ontology.h"
#include "resources/resources.h"
#include "tests/support/charts.h"
#include "tests/support/editcharts.h"
#include "tests/support/fixtures.h"
#include "tests/support/scriptedprompter.h"
#include "tests/support/treeliteral.h"
#include "viewer/piechartitem.h"

#include <QAction>
#include <QDoubleSpinBox>
#include <QFile>
#include <QJsonDocument>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using Sorvik::Edit::MainWindow;
using Sorvik::Edit::Scene;
using Sorvik::Test::ScriptedPrompter;
using Sorvik::Test::fileContents;
using Sorvik::Test::sliceLabelled;
using Slice = nu::graphics::PieChartTextItem;
using Sorvik::Edit::View;

namespace {

const QString& tree = Sorvik::Test::lifeTree;

// Where a slice is drawn and how: its span in scene degrees, its ring, count, colours and label.
QString describe(const Slice& slice, const QString& label)
{
    const QLineF axis(slice.mapToScene(QPointF(0, 0)), slice.mapToScene(QPointF(1, 0)));
    return QStringLiteral("%1 from %2 over %3 at %4+%5 total %6 fill %7 %8 label %9")
        .arg(slice.getOrder())
        .arg(std::fmod(axis.angle() + 360.0, 360.0), 0, 'f', 6)
        .arg(slice.getAngle(), 0, 'f', 6)
        .arg(slice.getRadius(), 0, 'f', 3)
        .arg(slice.getRadiusOffset(), 0, 'f', 3)
        .arg(slice.getTotal())
        .arg(slice.getBrush().color().name(QColor::HexArgb), slice.getText().brush.color().name(QColor::HexArgb), label);
}

// The slices from the centre outwards, each followed by its outer slices in order.
template <typename Label>
QStringList slices(const Slice& root, Label label)
{
    QStringList result{describe(root, label(root))};
    for (const Slice* child : root.sortedChildren<Slice>())
        result += slices(*child, label);
    return result;
}

// A point in the middle of a slice's ring and span.
QPointF inside(const Slice& slice)
{
    return slice.mapToScene(
        nu::edit::handlergeometry::polarPoint(slice.getRadius() + slice.getRadiusOffset() / 2, slice.getAngle() / 2));
}

// Where every editable item is drawn, in stacking order.
QStringList geometry(Scene& scene)
{
    QStringList result;
    for (QGraphicsItem* item : scene.items(Qt::AscendingOrder)) {
        const QRectF r = item->sceneBoundingRect();
        if (scene.getItemManager().findId(item))
            result << QStringLiteral("%1 %2 %3 %4").arg(r.x(), 0, 'f', 6).arg(r.y(), 0, 'f', 6).arg(r.width(), 0, 'f', 6)
                          .arg(r.height(), 0, 'f', 6);
    }
    return result;
}

// Whether any knob shown is drawn over the shape (scene coordinates). The rotation knob of a
// straight text keeps its fixed place 30 units along the text's direction, and is left out.
bool knobOver(Scene& scene, const QPainterPath& shape)
{
    for (QGraphicsItem* item : scene.items()) {
        auto knob = dynamic_cast<nu::edit::Handler*>(item);
        if (!knob || !knob->isVisible() || dynamic_cast<nu::edit::HandlerRotationRotationChildItem*>(knob))
            continue;
        QPainterPath circle;
        circle.addEllipse(knob->getKnobCentre(), knob->getRadius(), knob->getRadius());
        if (knob->mapToScene(circle).intersects(shape))
            return true;
    }
    return false;
}

} // namespace

class TestEditorWindow : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Sorvik::initResources(); }
    void init();

    void copyKeepsTheViewerChart_data();
    void copyKeepsTheViewerChart();
    void sheetEditIsOneUndoStep_data();
    void sheetEditIsOneUndoStep();
    void saveCloseOpenGivesIdenticalJson();
    void exportDrawsTheChartWithoutKnobs();
    void fileFailuresWarnAndKeepTheChart_data();
    void fileFailuresWarnAndKeepTheChart();
    void paintModeOneStepPerClick_data();
    void paintModeOneStepPerClick();
    void closingAsksAboutUnsavedChanges_data();
    void closingAsksAboutUnsavedChanges();
    void selectionIsOutlinedAndHitAnywhereInAText_data();
    void selectionIsOutlinedAndHitAnywhereInAText();
    void newAnnotationsLandWhereTheyCanBeRead_data();
    void newAnnotationsLandWhereTheyCanBeRead();
    void centreDiscKeepsItsLabel();

private:
    // Shows the window at a size that holds the whole chart.
    static bool show(MainWindow& window)
    {
        window.resize(900, 700);
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }
    // Clicks the scene point in the window's view, with the tool of the mode.
    void clickWith(MainWindow& window, Scene::CursorMode mode, const QPointF& at);
    // A window with a copy of the test chart, as the viewer opens it (none when literal is empty).
    std::unique_ptr<MainWindow> makeWindow(const QString& literal = tree, int levels = 5, double percent = 0.5);

    std::unique_ptr<QTemporaryDir> dir;
    std::shared_ptr<ScriptedPrompter> prompter;
};

void TestEditorWindow::init()
{
    dir = std::make_unique<QTemporaryDir>();
    prompter = std::make_shared<ScriptedPrompter>();
}

std::unique_ptr<MainWindow> TestEditorWindow::makeWindow(const QString& literal, int levels, double percent)
{
    auto window = std::make_unique<MainWindow>();
    window->setPrompter(prompter);
    if (!literal.isEmpty())
        window->createPieChart(Sorvik::Test::chartOf(dir->filePath("chart.ontology"), literal, levels, percent).get());
    return window;
}

void TestEditorWindow::copyKeepsTheViewerChart_data()
{
    QTest::addColumn<QString>("literal");
    QTest::addColumn<int>("levels");
    QTest::addColumn<double>("percent");
    QTest::addColumn<int>("count");

    // The dropped slices are gathered into one grey "N others" slice, copied like the others.
    QTest::newRow("small slices dropped") << tree << 5 << 0.5 << 17;
    QTest::newRow("two rings") << tree << 2 << 0.0 << 6;
    QTest::newRow("a disc") << QStringLiteral("r:5") << 5 << 0.5 << 1;
}

void TestEditorWindow::copyKeepsTheViewerChart()
{
    QFETCH(QString, literal);
    QFETCH(int, levels);
    QFETCH(double, percent);
    QFETCH(int, count);

    const auto chart = Sorvik::Test::chartOf(dir->filePath("chart.ontology"), literal, levels, percent);
    QVERIFY(chart);
    auto window = makeWindow(QString());
    window->createPieChart(chart.get());
    Scene& scene = window->getScene();
    Slice* copy = sliceLabelled(scene);
    QVERIFY(copy);
    const QStringList expected = slices(*chart, [](const Slice& slice) { return slice.getDefaultText(); });
    QCOMPARE(expected.size(), count);
    QCOMPARE(slices(*copy, [](const Slice& slice) { return slice.getText().text; }), expected);

    // Every slice is a labelled slice of the editor, and a press picks it.
    int editable = 0;
    for (QGraphicsItem* item : scene.items()) {
        const auto wrapped = scene.getItemManager().getItem(item);
        editable += wrapped && wrapped->getType() == 2;
    }
    QCOMPARE(editable, count);
    const auto outer = copy->sortedChildren<Slice>();
    Slice* picked = outer.empty() ? copy : outer.front();
    QCOMPARE(scene.pickItem(inside(*picked)).second, picked);
    // A fresh chart: nothing to undo and nothing to save.
    QVERIFY(!scene.canUndo());
    QVERIFY(!window->isWindowModified());
    QCOMPARE(window->windowTitle(), QStringLiteral("Untitled[*] - Sorvik Piechart Editor"));
}

void TestEditorWindow::sheetEditIsOneUndoStep_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("steps");

    QTest::newRow("new label") << "text.text" << QVariant("Firmicutes (phylum)") << 1;
    QTest::newRow("same label") << "text.text" << QVariant() << 0;
    QTest::newRow("wider ring") << "radius" << QVariant(45.0) << 1;
}

void TestEditorWindow::sheetEditIsOneUndoStep()
{
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QFETCH(int, steps);

    auto window = makeWindow();
    Scene& scene = window->getScene();
    nu::edit::PropertiesWidget* sheet = window->getPropertiesWidget();
    // The dock's sheet follows the scene's selection.
    QVERIFY(scene.selectItem(sliceLabelled(scene, "Firmicutes")));
    const long id = sheet->getSelectedId();
    QVERIFY(id);
    const auto item = [&] { return scene.getItemManager().getItem(id); };
    const QVariant before = item()->getPropertyValue(property);
    if (!value.isValid())
        value = before;

    QWidget* editor = sheet->getEditor(property);
    if (auto line = qobject_cast<QLineEdit*>(editor)) {
        line->setText(value.toString());
        emit line->editingFinished();
    } else if (auto spin = qobject_cast<QDoubleSpinBox*>(editor)) {
        spin->setValue(value.toDouble());
        emit spin->editingFinished();
    } else {
        QFAIL("no editor");
    }
    QCOMPARE(item()->getPropertyValue(property), value);
    QCOMPARE(scene.getUndoManager().getUndoCount(), steps);
    QCOMPARE(window->isWindowModified(), steps > 0);
    QCOMPARE(window->getActions().editUndo->isEnabled(), steps > 0);
    window->getActions().editUndo->trigger();
    QCOMPARE(item()->getPropertyValue(property), before);
    // The sheet shows the value undone.
    if (auto line = qobject_cast<QLineEdit*>(editor))
        QCOMPARE(line->text(), before.toString());
}

void TestEditorWindow::saveCloseOpenGivesIdenticalJson()
{
    const QString path = dir->filePath("annotated.pie");
    QByteArray saved;
    QStringList drawn;
    {
        auto window = makeWindow();
        Scene& scene = window->getScene();
        Slice* firmicutes = sliceLabelled(scene, "Firmicutes");
        const long bracket = scene.itemAddArcBracket(inside(*firmicutes), firmicutes);
        QVERIFY(scene.itemAddArcText(QPointF(), scene.getItemManager().getGraphicsItem(bracket)));
        QVERIFY(scene.itemAddRectText(QPointF(200, -150)));
        QVERIFY(window->isWindowModified());
        // The centre slice's order is no row of the sheet, but it is saved.
        QVERIFY(scene.selectItem(sliceLabelled(scene)));
        QVERIFY(!window->getPropertiesWidget()->getRow("order"));

        QVERIFY(window->saveFile(path));
        QVERIFY(!window->isWindowModified());
        QCOMPARE(window->windowTitle(), QStringLiteral("annotated.pie[*] - Sorvik Piechart Editor"));
        saved = fileContents(path);
        drawn = geometry(scene);
        QVERIFY(window->close());
    }
    auto window = makeWindow(QString());
    QVERIFY(window->openFile(path));
    QCOMPARE(window->getFileName(), path);
    QVERIFY(!window->isWindowModified());
    // Parents and offsets came back in the right order: everything is drawn where it was.
    QCOMPARE(geometry(window->getScene()), drawn);
    const QString again = dir->filePath("again.pie");
    QVERIFY(window->saveFile(again));
    // Loaded items take fresh ids; everything else comes back as it was saved.
    const auto items = [](const QByteArray& json) {
        return Sorvik::Test::normalizedItems(QJsonDocument::fromJson(json).object().value("data").toArray());
    };
    const QJsonArray original = items(saved);
    QCOMPARE(items(fileContents(again)), original);
    QCOMPARE(original.size(), 20);
    const auto centre = std::find_if(original.begin(), original.end(), [](const QJsonValue& item) {
        return item["type"] == 2 && item["parent-id"] == 0;
    });
    QVERIFY(centre->toObject()["data"].toObject().contains("order"));
    QVERIFY(prompter->shown.isEmpty());
}

void TestEditorWindow::exportDrawsTheChartWithoutKnobs()
{
    auto window = makeWindow();
    Scene& scene = window->getScene();
    const auto exported = [&](const QString& name) {
        const QString svg = dir->filePath(name + ".svg"), png = dir->filePath(name + ".png");
        return window->exportSvg(svg) && window->exportPng(png, 2.0) ? qMakePair(fileContents(svg), QImage(png))
                                                                     : qMakePair(QByteArray(), QImage());
    };
    const auto plain = exported("plain");
    QVERIFY(plain.first.contains("<svg"));
    QVERIFY(plain.first.trimmed().endsWith("</svg>"));
    const QRectF shown = scene.getImageRect();
    QCOMPARE(plain.second.size(), QSize(int(std::ceil(shown.width() * 2)), int(std::ceil(shown.height() * 2))));
    QCOMPARE(plain.second.pixelColor(1, 1), QColor(Qt::white));
    // The chart's middle is drawn: the centre disc's colour below its label, not the background.
    const QPoint middle = ((QPointF(0, 20) - shown.topLeft()) * 2).toPoint();
    QCOMPARE(plain.second.pixel(middle), sliceLabelled(scene)->getBrush().color().rgb());

    // The knobs of a selected item are no part of the picture, and stay after it.
    QVERIFY(scene.selectItem(sliceLabelled(scene, "Bacteria")));
    const auto selected = exported("selected");
    QCOMPARE(selected.first, plain.first);
    QCOMPARE(selected.second, plain.second);
    QVERIFY(scene.getHandledItem());
    QVERIFY(prompter->shown.isEmpty());
}

void TestEditorWindow::fileFailuresWarnAndKeepTheChart_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    const QByteArray newer = R"({"descriptor": "sorvik-piechart", "version": 2, "data": []})";
    const QString notChart = "it is not a Sorvik chart file", unwritable = "Check that its folder exists";
    QTest::newRow("open a missing file") << "open" << "missing.pie" << QByteArray()
                                         << "the file does not exist or cannot be read";
    QTest::newRow("open a binary file") << "open" << "binary.pie" << QByteArray("\x89PNG\r\n\x1a\n\0\0", 10) << notChart;
    QTest::newRow("open a newer version") << "open" << "newer.pie" << newer
                                          << "it was saved by another version of Sorvik";
    QTest::newRow("import a newer version") << "import" << "newer.pie" << newer << "another version";
    QTest::newRow("save into a missing folder") << "save" << "gone/chart.pie" << QByteArray() << unwritable;
    QTest::newRow("export SVG into a missing folder") << "svg" << "gone/chart.svg" << QByteArray() << unwritable;
    QTest::newRow("export PNG into a missing folder") << "png" << "gone/chart.png" << QByteArray() << unwritable;
    QTest::newRow("export PDF into a missing folder") << "pdf" << "gone/chart.pdf" << QByteArray() << unwritable;
}

void TestEditorWindow::fileFailuresWarnAndKeepTheChart()
{
    QFETCH(QString, operation);
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);

    const QString path = dir->filePath(name);
    QVERIFY(content.isNull() || !Sorvik::Test::writeFile(path, content).isEmpty());
    auto window = makeWindow();
    Scene& scene = window->getScene();
    scene.itemAddLine(QPointF(300, 0));
    const QJsonArray before = scene.getItemManager().toJson();

    const std::map<QString, std::function<bool()>> operations{
        {"open", [&] { return window->openFile(path); }},
        {"import", [&] { return window->importFile(path); }},
        {"save", [&] { return window->saveFile(path); }},
        {"svg", [&] { return window->exportSvg(path); }},
        {"png", [&] { return window->exportPng(path, 1.0); }},
        {"pdf", [&] { return window->exportPdf(path); }}};
    QVERIFY(!operations.at(operation)());

    QCOMPARE(prompter->shown.size(), 1);
    const ScriptedPrompter::Shown& shown = prompter->shown.first();
    QCOMPARE(int(shown.icon), int(QMessageBox::Warning));
    QVERIFY2(shown.text.contains(QDir::toNativeSeparators(path)), qPrintable(shown.text));
    QVERIFY2(shown.text.contains(reason), qPrintable(shown.text));
    // Nothing of the chart was lost, it still needs saving, and no file was left half-written.
    QCOMPARE(scene.getItemManager().toJson(), before);
    QVERIFY(window->isWindowModified());
    QVERIFY(window->getFileName().isEmpty());
    QCOMPARE(QFileInfo::exists(path), !content.isNull());
}

void TestEditorWindow::paintModeOneStepPerClick_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("shift");
    QTest::addColumn<int>("painted");

    // Bacteria holds Proteobacteria (two below it), Firmicutes (two) and Actinobacteria.
    QTest::newRow("click: the slice") << "Bacteria" << false << 1;
    QTest::newRow("shift+click: its outer slices too") << "Bacteria" << true << 8;
    QTest::newRow("click on the canvas") << "" << false << 0;
}

void TestEditorWindow::paintModeOneStepPerClick()
{
    QFETCH(QString, target);
    QFETCH(bool, shift);
    QFETCH(int, painted);

    auto window = makeWindow();
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    Scene& scene = window->getScene();
    const QColor paint(0x12, 0x34, 0x56);
    window->setPaintColor(paint);
    window->getActions().mode.at(Scene::CursorMode::Paint)->trigger();
    // The slice takes the paint colour, each ring outside it a shade of it, lighter outward.
    Slice* top = target.isEmpty() ? nullptr : sliceLabelled(scene, target);
    const auto paintedSlices = [&] {
        int count = 0;
        for (QGraphicsItem* item : scene.items()) {
            auto slice = dynamic_cast<Slice*>(item);
            int depth = 0;
            const QGraphicsItem* at = slice;
            for (; at && at != top; at = at->parentItem())
                ++depth;
            const QRgb expected = nu::graphics::Color::shadeOutward(paint, depth).rgba();
            if (slice && at && slice->getBrush().color().rgba() == expected)
                ++count;
        }
        return count;
    };
    const QPointF at = target.isEmpty() ? QPointF(400, 400) : inside(*sliceLabelled(scene, target));
    View* view = window->getView();
    view->centerOn(at);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, shift ? Qt::ShiftModifier : Qt::NoModifier,
                      view->mapFromScene(at));
    QCOMPARE(int(paintedSlices()), painted);
    if (painted) {
        QCOMPARE(top->getBrush().color(), paint);
        // The dark paint takes a white label.
        QCOMPARE(top->getText().brush.color(), QColor(Qt::white));
    }
    if (shift) {
        const QColor outer = sliceLabelled(scene, "Proteobacteria")->getBrush().color();
        const QColor outermost = sliceLabelled(scene, "Gammaproteobacteria")->getBrush().color();
        QVERIFY(paint.lightnessF() < outer.lightnessF() && outer.lightnessF() < outermost.lightnessF());
        QCOMPARE(std::abs(outer.hslHue() - paint.hslHue()) <= 1, true);
    }
    QCOMPARE(scene.getUndoManager().getUndoCount(), painted ? 1 : 0);
    // Painting goes on until another mode is chosen.
    QCOMPARE(scene.getCursorMode(), Scene::CursorMode::Paint);
    scene.slotUndo();
    QCOMPARE(int(paintedSlices()), 0);
}

void TestEditorWindow::closingAsksAboutUnsavedChanges_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("saveAs");
    QTest::addColumn<bool>("closed");

    QTest::newRow("discard") << int(QMessageBox::Discard) << "" << true;
    QTest::newRow("cancel") << int(QMessageBox::Cancel) << "" << false;
    QTest::newRow("save, then cancel the file dialog") << int(QMessageBox::Save) << "" << false;
    QTest::newRow("save") << int(QMessageBox::Save) << "kept" << true;
}

void TestEditorWindow::closingAsksAboutUnsavedChanges()
{
    QFETCH(int, answer);
    QFETCH(QString, saveAs);
    QFETCH(bool, closed);

    auto window = makeWindow();
    window->show();
    QVERIFY(window->close());
    QVERIFY(prompter->shown.isEmpty());

    window->show();
    window->getScene().itemAddRectText(QPointF(250, 0));
    prompter->answers = {QMessageBox::StandardButton(answer)};
    if (!saveAs.isEmpty())
        prompter->saveNames = QStringList{dir->filePath(saveAs)};
    QCOMPARE(window->close(), closed);
    QCOMPARE(prompter->shown.first().title, QStringLiteral("Save chart"));
    QCOMPARE(window->isVisible(), !closed);
    QCOMPARE(prompter->filters.value(0), answer == QMessageBox::Save ? MainWindow::fileFilter : QString());
    if (closed && answer == int(QMessageBox::Save)) {
        // No extension typed: the chart file's is added.
        const QString file = dir->filePath("kept.pie");
        QCOMPARE(window->getFileName(), file);
        QCOMPARE(nu::JsonDataFile(Scene::getFileInfo(file)).data(), window->getScene().getItemManager().toJson());
    }
}

void TestEditorWindow::clickWith(MainWindow& window, Scene::CursorMode mode, const QPointF& at)
{
    window.getActions().mode.at(mode)->trigger();
    View* view = window.getView();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, view->mapFromScene(at));
}

void TestEditorWindow::selectionIsOutlinedAndHitAnywhereInAText_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("on");

    QTest::newRow("straight text") << int(Scene::CursorMode::RectText) << "";
    QTest::newRow("arc text on a slice") << int(Scene::CursorMode::ArcText) << "Firmicutes";
    QTest::newRow("arc text on a lower slice") << int(Scene::CursorMode::ArcText) << "Eukaryota";
    QTest::newRow("elbow text") << int(Scene::CursorMode::ElbowText) << "";
    QTest::newRow("a slice's label") << int(Scene::CursorMode::Select) << "Bacteria";
}

// A selected item is outlined; a text is picked between its letters too; no knob covers the text
// the item shows.
void TestEditorWindow::selectionIsOutlinedAndHitAnywhereInAText()
{
    QFETCH(int, mode);
    QFETCH(QString, on);

    auto window = makeWindow();
    QVERIFY(show(*window));
    Scene& scene = window->getScene();
    Slice* slice = on.isEmpty() ? nullptr : sliceLabelled(scene, on);
    QGraphicsItem* item = slice;
    if (mode != int(Scene::CursorMode::Select)) {
        clickWith(*window, Scene::CursorMode(mode), slice ? inside(*slice) : QPointF(-120, -150));
        item = scene.getHandledItem();
        QVERIFY(item);
        // A gap between words wider than a press's slack.
        QVERIFY(scene.changeItems({item}, {{QStringLiteral("text"), QStringLiteral("new              text")}}));
    }
    // The text as drawn and the box or band it takes, in scene coordinates.
    QPainterPath letters = item->mapToScene(slice && item == slice ? slice->getLabelPath() : item->shape());
    if (auto arc = dynamic_cast<nu::graphics::ArcTextItem*>(item))
        letters = item->mapToScene(arc->path());
    QVERIFY(!letters.isEmpty());
    const QPainterPath taken = item->mapToScene(nu::edit::selectionShape(*item));

    // A point in the text's box or band that is on no letter.
    QPointF between;
    const QRectF box = letters.boundingRect();
    for (int i = 1; i < 60 && between.isNull(); ++i) {
        for (int j = 1; j < 10 && between.isNull(); ++j) {
            const QPointF p = box.topLeft() + QPointF(box.width() * i / 60, box.height() * j / 10);
            if (taken.contains(p) && !letters.intersects(nu::graphics::centeredRect(p, 5.0)))
                between = p;
        }
    }
    QVERIFY(!between.isNull());
    clickWith(*window, Scene::CursorMode::Select, QPointF(400, 400));
    QVERIFY(!scene.getHandledItem());
    clickWith(*window, Scene::CursorMode::Select, between);
    QCOMPARE(scene.getHandledItem(), item);

    nu::edit::HandlerPosition* knobs = Sorvik::Test::positionKnob(scene);
    QVERIFY(knobs);
    const QPainterPath outline = knobs->mapToScene(knobs->getOutline().getPath());
    const QRectF outlined = item == slice ? item->sceneBoundingRect() : box;
    QVERIFY(outline.boundingRect().contains(outlined.adjusted(1, 1, -1, -1)));
    // A slice's knobs keep off its label; a text's off its box or band.
    QVERIFY(!knobOver(scene, item == slice ? letters : taken));
}

void TestEditorWindow::newAnnotationsLandWhereTheyCanBeRead_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("on");

    QTest::newRow("arc text on an upper slice") << int(Scene::CursorMode::ArcText) << "Proteobacteria";
    QTest::newRow("arc text on a lower slice") << int(Scene::CursorMode::ArcText) << "Eukaryota";
    QTest::newRow("arc text on an inner lower slice") << int(Scene::CursorMode::ArcText) << "Archaea";
    QTest::newRow("bracket on an upper slice") << int(Scene::CursorMode::ArcBracket) << "Bacteria";
    QTest::newRow("bracket at the canvas's top") << int(Scene::CursorMode::ArcBracket) << "";
    QTest::newRow("elbow text on a slice") << int(Scene::CursorMode::ElbowText) << "Viruses";
    QTest::newRow("elbow text at the canvas's top") << int(Scene::CursorMode::ElbowText) << "";
}

void TestEditorWindow::newAnnotationsLandWhereTheyCanBeRead()
{
    QFETCH(int, mode);
    QFETCH(QString, on);

    auto window = makeWindow();
    QVERIFY(show(*window));
    Scene& scene = window->getScene();
    View* view = window->getView();
    Slice* slice = on.isEmpty() ? nullptr : sliceLabelled(scene, on);
    const QPointF at = slice ? inside(*slice) : QPointF(0, scene.sceneRect().top() + 5);
    clickWith(*window, Scene::CursorMode(mode), at);
    QGraphicsItem* made = scene.getHandledItem();
    QVERIFY(made);

    // All of it on the canvas and in sight.
    QGraphicsItem* first = made;
    while (first->parentItem() && first->parentItem() != slice)
        first = first->parentItem();
    QRectF drawn = first->sceneBoundingRect();
    for (QGraphicsItem* child : first->childItems())
        drawn |= child->sceneBoundingRect();
    const QRectF shown = view->mapToScene(view->viewport()->rect()).boundingRect();
    QVERIFY2(scene.sceneRect().contains(drawn) && shown.contains(drawn), qPrintable(on));

    if (auto arc = dynamic_cast<nu::graphics::ArcTextItem*>(made)) {
        // Upright: below the chart's centre the text runs the other way round.
        const bool lower = at.y() > 0;
        QCOMPARE(arc->getOrientation() == nu::graphics::ArcTextItem::Orientation::Outside, lower);
    }
    if (auto text = dynamic_cast<nu::graphics::RectTextItem*>(made)) {
        // The text stands clear of the level line it hangs on.
        auto level = dynamic_cast<nu::graphics::LineItem*>(text->parentItem());
        QVERIFY(level);
        const QPointF lineEnd = level->mapToScene(level->getEndPoint());
        const QRectF box = text->mapToScene(text->path().boundingRect()).boundingRect();
        const double clear = std::min(std::abs(box.left() - lineEnd.x()), std::abs(box.right() - lineEnd.x()));
        QVERIFY2(clear >= 5 && !box.contains(lineEnd), qPrintable(QString::number(clear)));
    }
}

// The copy of a viewer chart keeps the label of its centre disc, straight across the middle.
void TestEditorWindow::centreDiscKeepsItsLabel()
{
    auto window = makeWindow();
    Slice* centre = sliceLabelled(window->getScene());
    QVERIFY(centre);
    const QPainterPath label = centre->getLabelPath();
    QVERIFY(!label.isEmpty());
    const QRectF box = label.boundingRect();
    QVERIFY(std::abs(box.center().x()) < 1 && std::abs(box.center().y()) < 3);
    QVERIFY(box.width() <= 2 * centre->getRadiusFull());
    // One straight line of text, not bent round the disc.
    QVERIFY(box.height() < QFontMetricsF(centre->getText().font).height() * 1.2);
}

QTEST_MAIN(TestEditorWindow)
#include "tst_editorwindow.moc"
