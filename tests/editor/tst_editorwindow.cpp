#include "editor/mainwindow.h"
#include "editor/view.h"
#include "nu/edit/propertieswidget.h"
#include "nu/graphics/piecharttextitem.h"
#include "ontology/ontology.h"
#include "resources/resources.h"
#include "tests/support/editcharts.h"
#include "tests/support/scriptedprompter.h"
#include "tests/support/treeliteral.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

#include <QAction>
#include <QFile>
#include <QJsonDocument>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using Sorvik::Edit::MainWindow;
using Sorvik::Edit::Scene;
using Sorvik::Test::ScriptedPrompter;
using Slice = nu::graphics::PieChartTextItem;

namespace {

const QString tree = QStringLiteral(
    "root=Life(b=Bacteria(p=Proteobacteria:40(g=Gammaproteobacteria:30 al=Alphaproteobacteria:20) "
    "f=Firmicutes:35(bc=Bacilli:20 cl=Clostridia:12) ac=Actinobacteria:10) ar=Archaea:8(eu=Euryarchaeota:7) "
    "ek=Eukaryota:30(m=Metazoa:12(h=\"Homo sapiens\":9) fu=Fungi:6) v=Viruses:4 u=unclassified:1)");

std::unique_ptr<Sorvik::Viewer::PieChartItem> viewerChart(const QString& file, const QString& literal, int levels,
                                                          double percent)
{
    Sorvik::Test::writeTree(file, literal);
    const Zem::Ontology::Ontology ontology(file);
    Sorvik::Viewer::PieChartBuilder builder(ontology);
    builder.setMaxLevels(levels);
    builder.setMinPercentage(percent);
    builder.read();
    return builder.takeRootItem();
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& data)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(data);
}

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

Slice* centreOf(Scene& scene)
{
    for (QGraphicsItem* item : scene.items()) {
        auto slice = dynamic_cast<Slice*>(item);
        if (slice && !slice->parentItem())
            return slice;
    }
    return nullptr;
}

Slice* sliceLabelled(Scene& scene, const QString& prefix)
{
    for (QGraphicsItem* item : scene.items()) {
        auto slice = dynamic_cast<Slice*>(item);
        if (slice && slice->getText().text.startsWith(prefix))
            return slice;
    }
    return nullptr;
}

// A point in the middle of a slice's ring and span.
QPointF inside(const Slice& slice)
{
    const double radius = slice.getRadius() + slice.getRadiusOffset() / 2;
    const double angle = qDegreesToRadians(slice.getAngle() / 2);
    return slice.mapToScene(QPointF(radius * std::cos(angle), -radius * std::sin(angle)));
}

} // namespace

class TestEditorWindow : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Sorvik::initResources(); }
    void init();
    void cleanup();

    void copyKeepsTheViewerChart_data();
    void copyKeepsTheViewerChart();
    void saveCloseOpenGivesIdenticalJson();
    void exportDrawsTheChartWithoutKnobs();
    void fileFailuresWarnAndKeepTheChart_data();
    void fileFailuresWarnAndKeepTheChart();
    void paintModeOneStepPerClick_data();
    void paintModeOneStepPerClick();
    void closingAsksAboutUnsavedChanges_data();
    void closingAsksAboutUnsavedChanges();
    void editUnderWayIsSaved();

private:
    std::unique_ptr<MainWindow> makeWindow();
    // The window with a copy of the test chart, as the viewer opens it.
    std::unique_ptr<MainWindow> chartWindow();

    std::unique_ptr<QTemporaryDir> dir;
    std::shared_ptr<ScriptedPrompter> prompter;
};

void TestEditorWindow::init()
{
    dir = std::make_unique<QTemporaryDir>();
    prompter = std::make_shared<ScriptedPrompter>();
}

void TestEditorWindow::cleanup()
{
    prompter.reset();
    dir.reset();
}

std::unique_ptr<MainWindow> TestEditorWindow::makeWindow()
{
    auto window = std::make_unique<MainWindow>();
    window->setPrompter(prompter);
    return window;
}

std::unique_ptr<MainWindow> TestEditorWindow::chartWindow()
{
    auto window = makeWindow();
    const auto chart = viewerChart(dir->filePath(QStringLiteral("chart.ontology")), tree, 5, 0.5);
    window->createPieChart(chart.get());
    return window;
}

void TestEditorWindow::copyKeepsTheViewerChart_data()
{
    QTest::addColumn<QString>("literal");
    QTest::addColumn<int>("levels");
    QTest::addColumn<double>("percent");
    QTest::addColumn<int>("count");

    QTest::newRow("small slices dropped") << tree << 5 << 0.5 << 16;
    QTest::newRow("every slice") << tree << 10 << 0.0 << 17;
    QTest::newRow("two rings") << tree << 2 << 0.0 << 6;
    QTest::newRow("a disc") << QStringLiteral("r:5") << 5 << 0.5 << 1;
}

void TestEditorWindow::copyKeepsTheViewerChart()
{
    QFETCH(QString, literal);
    QFETCH(int, levels);
    QFETCH(double, percent);
    QFETCH(int, count);

    const auto chart = viewerChart(dir->filePath(QStringLiteral("chart.ontology")), literal, levels, percent);
    QVERIFY(chart);
    auto window = makeWindow();
    window->createPieChart(chart.get());
    Scene& scene = window->getScene();

    Slice* copy = centreOf(scene);
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

void TestEditorWindow::saveCloseOpenGivesIdenticalJson()
{
    const QString path = dir->filePath(QStringLiteral("annotated.pie"));
    QByteArray saved;
    {
        auto window = chartWindow();
        Scene& scene = window->getScene();
        Slice* firmicutes = sliceLabelled(scene, QStringLiteral("Firmicutes"));
        QVERIFY(firmicutes);
        const long bracket = scene.itemAddArcBracket(inside(*firmicutes), firmicutes);
        QVERIFY(bracket);
        QVERIFY(scene.itemAddArcText(QPointF(), scene.getItemManager().getGraphicsItem(bracket)));
        QVERIFY(scene.itemAddRectText(QPointF(200, -150)));
        QVERIFY(window->isWindowModified());

        QVERIFY(window->saveFile(path));
        QVERIFY(!window->isWindowModified());
        QCOMPARE(window->windowTitle(), QStringLiteral("annotated.pie[*] - Sorvik Piechart Editor"));
        saved = contents(path);
        QVERIFY(window->close());
        QVERIFY(prompter->shown.isEmpty());
    }
    auto window = makeWindow();
    QVERIFY(window->openFile(path));
    QCOMPARE(window->getFileName(), path);
    QVERIFY(!window->isWindowModified());
    const QString again = dir->filePath(QStringLiteral("again.pie"));
    QVERIFY(window->saveFile(again));
    // Loaded items take fresh ids; everything else comes back as it was saved.
    const auto items = [](const QByteArray& json) {
        return Sorvik::Test::normalizedItems(QJsonDocument::fromJson(json).object().value("data").toArray());
    };
    QCOMPARE(items(contents(again)), items(saved));
    QCOMPARE(items(saved).size(), 19);
    QVERIFY(prompter->shown.isEmpty());
}

void TestEditorWindow::exportDrawsTheChartWithoutKnobs()
{
    auto window = chartWindow();
    Scene& scene = window->getScene();
    const QString plainSvg = dir->filePath(QStringLiteral("plain.svg"));
    const QString plainPng = dir->filePath(QStringLiteral("plain.png"));
    QVERIFY(window->exportSvg(plainSvg));
    QVERIFY(window->exportPng(plainPng, 2.0));

    const QByteArray svg = contents(plainSvg);
    QVERIFY(svg.contains("<svg"));
    QVERIFY(svg.trimmed().endsWith("</svg>"));
    const QImage png(plainPng);
    const QRectF shown = scene.getImageRect();
    QCOMPARE(png.size(), QSize(int(std::ceil(shown.width() * 2)), int(std::ceil(shown.height() * 2))));
    QCOMPARE(png.pixelColor(1, 1), QColor(Qt::white));
    // The chart's middle is drawn: the centre disc's colour, not the background.
    const QPoint middle = ((QPointF(0, 0) - shown.topLeft()) * 2).toPoint();
    QCOMPARE(png.pixel(middle), centreOf(scene)->getBrush().color().rgb());

    // The knobs of a selected item are no part of the picture.
    QVERIFY(scene.selectItem(sliceLabelled(scene, QStringLiteral("Bacteria"))));
    QVERIFY(scene.getHandledItem());
    const QString selectedSvg = dir->filePath(QStringLiteral("selected.svg"));
    const QString selectedPng = dir->filePath(QStringLiteral("selected.png"));
    QVERIFY(window->exportSvg(selectedSvg));
    QVERIFY(window->exportPng(selectedPng, 2.0));
    QCOMPARE(contents(selectedSvg), svg);
    QCOMPARE(QImage(selectedPng), png);
    QVERIFY(scene.getHandledItem());
    QVERIFY(prompter->shown.isEmpty());
}

void TestEditorWindow::fileFailuresWarnAndKeepTheChart_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("reason");

    const QByteArray newer = R"({"descriptor": "sorvik-piechart", "version": 2, "data": []})";
    const QString notChart = QStringLiteral("it is not a Sorvik chart file");
    const QString unwritable = QStringLiteral("Check that its folder exists");
    QTest::newRow("open a missing file") << "open" << "missing.pie" << QByteArray() << "Problem opening file"
                                         << "the file does not exist or cannot be read";
    QTest::newRow("open a binary file") << "open" << "binary.pie" << QByteArray("\x89PNG\r\n\x1a\n\0\0", 10)
                                        << "Problem opening file" << notChart;
    QTest::newRow("open another program's JSON")
        << "open" << "other.pie" << QByteArray(R"({"descriptor": "other", "version": 1, "data": []})")
        << "Problem opening file" << notChart;
    QTest::newRow("open a newer version") << "open" << "newer.pie" << newer << "Problem opening file"
                                          << "it was saved by another version of Sorvik";
    QTest::newRow("import an empty file") << "import" << "empty.pie" << QByteArray("") << "Problem importing file"
                                          << notChart;
    QTest::newRow("import a newer version") << "import" << "newer.pie" << newer << "Problem importing file"
                                            << "another version";
    QTest::newRow("save into a missing folder") << "save" << "gone/chart.pie" << QByteArray() << "Problem saving file"
                                                << unwritable;
    QTest::newRow("export SVG into a missing folder")
        << "svg" << "gone/chart.svg" << QByteArray() << "Problem exporting image" << unwritable;
    QTest::newRow("export PNG into a missing folder")
        << "png" << "gone/chart.png" << QByteArray() << "Problem exporting image" << unwritable;
}

void TestEditorWindow::fileFailuresWarnAndKeepTheChart()
{
    QFETCH(QString, operation);
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, title);
    QFETCH(QString, reason);

    const QString path = dir->filePath(name);
    if (!content.isNull())
        write(path, content);
    auto window = chartWindow();
    Scene& scene = window->getScene();
    scene.itemAddLine(QPointF(300, 0));
    const QJsonArray before = scene.getItemManager().toJson();

    bool done = true;
    if (operation == QLatin1String("open"))
        done = window->openFile(path);
    else if (operation == QLatin1String("import"))
        done = window->importFile(path);
    else if (operation == QLatin1String("save"))
        done = window->saveFile(path);
    else if (operation == QLatin1String("svg"))
        done = window->exportSvg(path);
    else
        done = window->exportPng(path, 1.0);
    QVERIFY(!done);

    QCOMPARE(prompter->shown.size(), 1);
    const ScriptedPrompter::Shown& shown = prompter->shown.first();
    QCOMPARE(int(shown.icon), int(QMessageBox::Warning));
    QCOMPARE(shown.title, title);
    QVERIFY2(shown.text.contains(QDir::toNativeSeparators(path)), qPrintable(shown.text));
    QVERIFY2(shown.text.contains(reason), qPrintable(shown.text));
    // Nothing of the chart was lost, and it still needs saving.
    QCOMPARE(scene.getItemManager().toJson(), before);
    QVERIFY(window->isWindowModified());
    QVERIFY(window->getFileName().isEmpty());
    if (content.isNull())
        QVERIFY(!QFileInfo::exists(path));
}

void TestEditorWindow::paintModeOneStepPerClick_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("shift");
    QTest::addColumn<int>("painted");

    // Bacteria holds Proteobacteria (two below it), Firmicutes (two) and Actinobacteria.
    QTest::newRow("click: the slice") << "Bacteria" << false << 1;
    QTest::newRow("shift+click: its outer slices too") << "Bacteria" << true << 8;
    QTest::newRow("shift+click on the outermost ring") << "Bacilli" << true << 1;
    QTest::newRow("click on the canvas") << "" << false << 0;
}

void TestEditorWindow::paintModeOneStepPerClick()
{
    QFETCH(QString, target);
    QFETCH(bool, shift);
    QFETCH(int, painted);

    auto window = chartWindow();
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    Scene& scene = window->getScene();
    const QColor paint(0x12, 0x34, 0x56);
    window->setPaintColor(paint);
    window->getActions().mode.at(Scene::CursorMode::Paint)->trigger();
    QCOMPARE(scene.getCursorMode(), Scene::CursorMode::Paint);

    const auto fills = [&scene] {
        QStringList result;
        for (QGraphicsItem* item : scene.items(Qt::AscendingOrder)) {
            if (auto slice = dynamic_cast<Slice*>(item))
                result << slice->getText().text + QLatin1Char('=') + slice->getBrush().color().name();
        }
        return result;
    };
    const QStringList before = fills();
    const QPointF at = target.isEmpty() ? QPointF(400, 400) : inside(*sliceLabelled(scene, target));
    window->getView()->centerOn(at);
    QTest::mouseClick(window->getView()->viewport(), Qt::LeftButton, shift ? Qt::ShiftModifier : Qt::NoModifier,
                      window->getView()->mapFromScene(at));

    const QStringList after = fills();
    int changed = 0;
    for (int i = 0; i < after.size(); ++i) {
        if (after[i] != before[i]) {
            ++changed;
            QVERIFY2(after[i].endsWith(paint.name()), qPrintable(after[i]));
        }
    }
    QCOMPARE(changed, painted);
    QCOMPARE(scene.getUndoManager().getUndoCount(), painted ? 1 : 0);
    // Painting goes on until another mode is chosen.
    QCOMPARE(scene.getCursorMode(), Scene::CursorMode::Paint);
    scene.slotUndo();
    QCOMPARE(fills(), before);
}

void TestEditorWindow::closingAsksAboutUnsavedChanges_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("saveAs");
    QTest::addColumn<bool>("closed");

    QTest::newRow("discard") << int(QMessageBox::Discard) << "" << true;
    QTest::newRow("cancel") << int(QMessageBox::Cancel) << "" << false;
    QTest::newRow("save, then cancel the file dialog") << int(QMessageBox::Save) << "" << false;
    QTest::newRow("save into a missing folder") << int(QMessageBox::Save) << "gone/chart.pie" << false;
    QTest::newRow("save") << int(QMessageBox::Save) << "kept" << true;
}

void TestEditorWindow::closingAsksAboutUnsavedChanges()
{
    QFETCH(int, answer);
    QFETCH(QString, saveAs);
    QFETCH(bool, closed);

    auto window = chartWindow();
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
    if (saveAs == QLatin1String("kept")) {
        // No extension typed: the chart file's is added.
        const QString file = dir->filePath(QStringLiteral("kept.pie"));
        QCOMPARE(window->getFileName(), file);
        const nu::JsonDataFile saved(Scene::getFileInfo(file));
        QCOMPARE(saved.data(), window->getScene().getItemManager().toJson());
    }
}

void TestEditorWindow::editUnderWayIsSaved()
{
    auto window = chartWindow();
    window->show();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    Scene& scene = window->getScene();
    const long text = scene.itemAddRectText(QPointF(250, 0));
    QCOMPARE(window->getPropertiesWidget()->getSelectedId(), text);
    auto editor = qobject_cast<QLineEdit*>(window->getPropertiesWidget()->getEditor(QStringLiteral("text")));
    QVERIFY(editor);
    editor->setFocus();
    QTRY_VERIFY(editor->hasFocus());
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("Figure 2"));
    // Saved with the shortcut, the field still being edited.
    const QString path = dir->filePath(QStringLiteral("figure.pie"));
    QVERIFY(window->saveFile(path));
    QCOMPARE(scene.getItemManager().getItem(text)->getPropertyValue(QStringLiteral("text")).toString(),
             QStringLiteral("Figure 2"));
    QVERIFY(contents(path).contains("Figure 2"));
    QVERIFY(!window->isWindowModified());
}

QTEST_MAIN(TestEditorWindow)
#include "tst_editorwindow.moc"
