#include "editor/mainwindow.h"

#include "editor/imagescaledialog.h"
#include "editor/view.h"
#include "nu/edit/propertieswidget.h"
#include "nu/graphics/piecharttextitem.h"
#include "nu/graphics/sceneimage.h"
#include "nu/prompter.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QColorDialog>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QPainter>
#include <QPixmap>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

namespace Sorvik {
namespace Edit {

namespace {

using Mode = Scene::CursorMode;

QString shown(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

QIcon swatch(const QColor& color)
{
    QPixmap pixmap(24, 24);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0x2f, 0x3b, 0x4a), 1.5));
    painter.setBrush(color);
    painter.drawRoundedRect(QRectF(3.5, 3.5, 17, 17), 3, 3);
    return QIcon(pixmap);
}

// What a click does in each mode, for the status bar.
QString hint(Mode mode)
{
    switch (mode) {
    case Mode::Select:
        return MainWindow::tr("Click an item to edit it; drag its knobs to shape it.");
    case Mode::ArcText:
        return MainWindow::tr("Click a slice or the canvas to place an arc text.");
    case Mode::ArcBracket:
        return MainWindow::tr("Click a slice to bracket it, or the canvas to place a bracket.");
    case Mode::RectText:
        return MainWindow::tr("Click an item or the canvas to place a straight text.");
    case Mode::ElbowText:
        return MainWindow::tr("Click a slice or the canvas to place a text on a bent line.");
    case Mode::Line:
        return MainWindow::tr("Click an item or the canvas to place a line.");
    case Mode::SubSpace:
        return MainWindow::tr("Click an item or the canvas to place a subspace.");
    case Mode::Paint:
        return MainWindow::tr("Click a slice to paint it; Shift+click paints its outer slices too. Esc ends.");
    }
    return QString();
}

} // namespace

const QString MainWindow::fileFilter = QStringLiteral("Piecharts (*.pie);;All files (*)");

MainWindow::Actions::Actions(MainWindow* window)
{
    const auto make = [window](const QString& text, const QString& tip, const QString& icon,
                               const QList<QKeySequence>& keys = {}) {
        auto* action = new QAction(text, window);
        action->setStatusTip(tip);
        action->setToolTip(tip);
        if (!icon.isEmpty())
            action->setIcon(QIcon(icon));
        action->setShortcuts(keys);
        return action;
    };
    fileNew = make(tr("New"), tr("Start an empty chart"), QStringLiteral(":/icons/document-new.svg"),
                   {QKeySequence::New});
    fileOpen = make(tr("Open..."), tr("Open a chart file"), QStringLiteral(":/icons/document-open.svg"),
                    {QKeySequence::Open});
    fileSave = make(tr("Save"), tr("Save the chart"), QStringLiteral(":/icons/document-save.svg"),
                    {QKeySequence::Save});
    fileSaveAs = make(tr("Save As..."), tr("Save the chart in another file"),
                      QStringLiteral(":/icons/document-save-as.svg"),
                      {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)});
    fileImport = make(tr("Import..."), tr("Add the items of a chart file to this chart"),
                      QStringLiteral(":/icons/document-import.svg"));
    fileExportSvg = make(tr("Export SVG..."), tr("Write the drawing as an SVG image"),
                         QStringLiteral(":/icons/image-export.svg"));
    fileExportPng = make(tr("Export PNG..."), tr("Write the drawing as a PNG image"), QString());
    fileExportPdf = make(tr("Export PDF..."), tr("Write the drawing as a PDF document, its texts as text"), QString());
    fileClose = make(tr("Close"), tr("Close the editor"), QString(), {QKeySequence::Close});

    editUndo = make(tr("Undo"), tr("Undo the last change"), QStringLiteral(":/icons/edit-undo.svg"),
                    {QKeySequence(Qt::CTRL | Qt::Key_Z)});
    editRedo = make(tr("Redo"), tr("Redo the change undone last"), QStringLiteral(":/icons/edit-redo.svg"),
                    {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    editDelete = make(tr("Delete"), tr("Delete the selected item with everything on it"),
                      QStringLiteral(":/icons/edit-delete.svg"), {QKeySequence::Delete});
    editFitCanvas = make(tr("Fit canvas"), tr("Fit the canvas to the drawing and show all of it"),
                         QStringLiteral(":/icons/zoom-fit.svg"));
    editShowSubSpaces = make(tr("Show subspaces"), tr("Show or hide the subspaces' axes"),
                             QStringLiteral(":/icons/view-subspaces.svg"));
    editShowSubSpaces->setCheckable(true);
    editShowSubSpaces->setChecked(true);

    modes = new QActionGroup(window);
    modes->setExclusive(true);
    const auto modeAction = [&](Mode m, const QString& text, const QString& tip, const QString& icon) {
        QAction* action = make(text, tip, icon);
        action->setCheckable(true);
        modes->addAction(action);
        mode[m] = action;
    };
    modeAction(Mode::Select, tr("Select"), tr("Select and shape items"), QStringLiteral(":/icons/tool-select.svg"));
    modeAction(Mode::ArcText, tr("Arc text"), tr("Place a text bent along a circle"),
               QStringLiteral(":/icons/tool-arc-text.svg"));
    modeAction(Mode::ArcBracket, tr("Arc bracket"), tr("Place a bracket along a circle"),
               QStringLiteral(":/icons/tool-arc-bracket.svg"));
    modeAction(Mode::RectText, tr("Straight text"), tr("Place a straight text"),
               QStringLiteral(":/icons/tool-rect-text.svg"));
    modeAction(Mode::ElbowText, tr("Elbow text"), tr("Place a text on a bent line"),
               QStringLiteral(":/icons/tool-elbow-text.svg"));
    modeAction(Mode::Line, tr("Line"), tr("Place a line"), QStringLiteral(":/icons/tool-line.svg"));
    modeAction(Mode::SubSpace, tr("Subspace"), tr("Place a subspace: axes other items can hang on"),
               QStringLiteral(":/icons/tool-subspace.svg"));
    modeAction(Mode::Paint, tr("Paint"), tr("Paint slices with the paint colour"),
               QStringLiteral(":/icons/tool-paint.svg"));
    mode[Mode::Select]->setChecked(true);
    paintColor = make(tr("Paint colour..."), tr("Choose the colour slices are painted with"), QString());
}

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
    , prompter(std::make_shared<nu::Prompter>())
    , manager(std::make_unique<Scene::ItemManager>())
    , scene(std::make_unique<Scene>(*manager))
    , actions(std::make_unique<Actions>(this))
{
    setWindowIcon(QIcon(QStringLiteral(":/icons/sorvik-piechart.svg")));
    view = new View(scene.get(), this);
    setCentralWidget(view);

    dock = new QDockWidget(tr("Properties"), this);
    dock->setObjectName(QStringLiteral("propertiesDock"));
    sheet = scene->getPropertiesWidget(dock);
    dock->setWidget(sheet);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    resizeDocks({dock}, {320}, Qt::Horizontal);

    // Delete works on the drawing only: in a field of the sheet the key edits the field.
    actions->editDelete->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    view->addAction(actions->editDelete);

    createMenusAndToolBars();
    connectScene();
    setPaintColor(scene->getPaintColor());
    cursorModeChanged(scene->getCursorMode());
    resize(1100, 760);
    updateUndoActions();
    updateTitle();
}

MainWindow::~MainWindow()
{
    // The sheet shows an item of the scene, which goes first.
    sheet->slotSetSelection(0);
}

void MainWindow::createMenusAndToolBars()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addActions({actions->fileNew, actions->fileOpen, actions->fileSave, actions->fileSaveAs});
    file->addSeparator();
    file->addActions({actions->fileImport, actions->fileExportSvg, actions->fileExportPng, actions->fileExportPdf});
    file->addSeparator();
    file->addAction(actions->fileClose);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    edit->addActions({actions->editUndo, actions->editRedo, actions->editDelete});
    edit->addSeparator();
    edit->addActions({actions->editFitCanvas, actions->editShowSubSpaces});

    QMenu* insert = menuBar()->addMenu(tr("&Insert"));
    insert->addActions(actions->modes->actions());
    insert->addSeparator();
    insert->addAction(actions->paintColor);

    QMenu* windowMenu = menuBar()->addMenu(tr("&Window"));
    windowMenu->addAction(dock->toggleViewAction());

    const auto bar = [this](const QString& title, const char* name, const QList<QAction*>& list) {
        QToolBar* toolBar = addToolBar(title);
        toolBar->setObjectName(QLatin1String(name));
        toolBar->addActions(list);
        return toolBar;
    };
    bar(tr("File"), "fileToolBar", {actions->fileNew, actions->fileOpen, actions->fileSave, actions->fileExportSvg});
    bar(tr("Edit"), "editToolBar",
        {actions->editUndo, actions->editRedo, actions->editDelete, actions->editFitCanvas,
         actions->editShowSubSpaces});
    QList<QAction*> modes = actions->modes->actions();
    modes.removeAll(actions->mode[Mode::Paint]);
    bar(tr("Insert"), "insertToolBar", modes);
    QToolBar* paint = bar(tr("Paint"), "paintToolBar", {actions->mode[Mode::Paint]});
    colorButton = new QToolButton(paint);
    colorButton->setObjectName(QStringLiteral("paintColorButton"));
    colorButton->setDefaultAction(actions->paintColor);
    paint->addWidget(colorButton);

    auto* modeHint = new QLabel(statusBar());
    modeHint->setObjectName(QStringLiteral("modeHint"));
    statusBar()->addWidget(modeHint, 1);
    connect(scene.get(), &Scene::signalCursorModeChanged, modeHint, [modeHint](Mode m) { modeHint->setText(hint(m)); });
    modeHint->setText(hint(scene->getCursorMode()));
}

void MainWindow::connectScene()
{
    connect(actions->fileNew, &QAction::triggered, this, &MainWindow::slotFileNew);
    connect(actions->fileOpen, &QAction::triggered, this, &MainWindow::slotFileOpen);
    connect(actions->fileSave, &QAction::triggered, this, &MainWindow::slotFileSave);
    connect(actions->fileSaveAs, &QAction::triggered, this, &MainWindow::slotFileSaveAs);
    connect(actions->fileImport, &QAction::triggered, this, &MainWindow::slotFileImport);
    connect(actions->fileExportSvg, &QAction::triggered, this, &MainWindow::slotFileExportSvg);
    connect(actions->fileExportPng, &QAction::triggered, this, &MainWindow::slotFileExportPng);
    connect(actions->fileExportPdf, &QAction::triggered, this, &MainWindow::slotFileExportPdf);
    connect(actions->fileClose, &QAction::triggered, this, &MainWindow::close);

    Scene* s = scene.get();
    connect(actions->editUndo, &QAction::triggered, s, &Scene::slotUndo);
    connect(actions->editRedo, &QAction::triggered, s, &Scene::slotRedo);
    connect(actions->editDelete, &QAction::triggered, s, &Scene::slotDeleteSelected);
    connect(actions->editFitCanvas, &QAction::triggered, this, &MainWindow::slotFitCanvas);
    connect(actions->editShowSubSpaces, &QAction::toggled, s, &Scene::slotEditSubSpacesVisible);
    connect(s, &Scene::signalSubSpacesVisibleChanged, actions->editShowSubSpaces, &QAction::setChecked);
    for (const auto& entry : actions->mode) {
        const Mode m = entry.first;
        connect(entry.second, &QAction::triggered, s, [s, m] { s->setCursorMode(m); });
    }
    connect(s, &Scene::signalCursorModeChanged, this, &MainWindow::cursorModeChanged);
    connect(actions->paintColor, &QAction::triggered, this, &MainWindow::slotChoosePaintColor);

    connect(s, &Scene::signalUndoStateChanged, this, &MainWindow::updateUndoActions);
    connect(s, &Scene::signalUndoStateChanged, this, &MainWindow::updateTitle);
    connect(s, &Scene::signalItemSelected, this,
            [this](nu::edit::PropertyItem::Id id) { actions->editDelete->setEnabled(id != 0); });
    actions->editDelete->setEnabled(false);
    connect(s, &Scene::signalItemCreated, this, &MainWindow::showNewItem);
}

void MainWindow::showNewItem(nu::edit::PropertyItem::Id id)
{
    QGraphicsItem* item = scene->getItemManager().getGraphicsItem(id);
    if (!item)
        return;
    // The canvas has grown to take the item in: a fitted view takes in the whole canvas too, a
    // zoomed one scrolls to the item.
    const QRectF fitted = view->getFittedRect();
    if (!fitted.isNull())
        view->fitRect(fitted | scene->sceneRect());
    else
        view->ensureVisible(item->sceneBoundingRect(), 10, 10);
}

void MainWindow::setPrompter(std::shared_ptr<nu::Prompter> p)
{
    if (p)
        prompter = std::move(p);
}

void MainWindow::updateTitle()
{
    const QString name = fileName.isEmpty() ? tr("Untitled") : QFileInfo(fileName).fileName();
    setWindowTitle(tr("%1[*] - Sorvik Piechart Editor").arg(name));
    setWindowModified(scene->hasChanged());
}

void MainWindow::updateUndoActions()
{
    actions->editUndo->setEnabled(scene->canUndo());
    actions->editRedo->setEnabled(scene->canRedo());
}

void MainWindow::cursorModeChanged(Mode mode)
{
    if (QAction* action = actions->mode[mode])
        action->setChecked(true);
    switch (mode) {
    case Mode::Select:
        view->setModeCursor(Qt::ArrowCursor);
        break;
    case Mode::Paint:
        view->setModeCursor(Qt::PointingHandCursor);
        break;
    default:
        view->setModeCursor(Qt::CrossCursor);
        break;
    }
}

void MainWindow::setPaintColor(const QColor& color)
{
    scene->setPaintColor(color);
    actions->paintColor->setIcon(swatch(scene->getPaintColor()));
}

void MainWindow::slotChoosePaintColor()
{
    QColorDialog dialog(scene->getPaintColor(), this);
    dialog.setWindowTitle(tr("Paint colour"));
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    if (prompter->exec(dialog) != QDialog::Accepted)
        return;
    setPaintColor(dialog.selectedColor());
    // A colour is chosen to be used.
    scene->setCursorMode(Mode::Paint);
}

void MainWindow::warn(const QString& title, const QString& text)
{
    prompter->message(this, QMessageBox::Warning, title, text, QMessageBox::Ok);
}

void MainWindow::commitEditing()
{
    QWidget* focused = QApplication::focusWidget();
    if (focused && dock->isAncestorOf(focused))
        focused->clearFocus();
}

bool MainWindow::maybeSave()
{
    commitEditing();
    if (!scene->hasChanged())
        return true;
    const QString name = fileName.isEmpty() ? tr("the untitled chart") : shown(fileName);
    const QMessageBox::StandardButton answer =
        prompter->message(this, QMessageBox::Question, tr("Save chart"),
                          tr("Do you want to save the changes to %1?").arg(name),
                          QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    if (answer == QMessageBox::Discard)
        return true;
    if (answer == QMessageBox::Save)
        return slotFileSave();
    return false;
}

QString MainWindow::askOpenName(const QString& filter)
{
    const QString folder = lastFolder.isEmpty() && !fileName.isEmpty() ? QFileInfo(fileName).absolutePath() : lastFolder;
    const QString name = prompter->getOpenFileName(this, folder, filter);
    if (!name.isEmpty())
        lastFolder = QFileInfo(name).absolutePath();
    return name;
}

QString MainWindow::askSaveName(const QString& filter, const QString& extension)
{
    const QString folder = lastFolder.isEmpty() && !fileName.isEmpty() ? QFileInfo(fileName).absolutePath() : lastFolder;
    QString name = prompter->getSaveFileName(this, folder, filter);
    if (name.isEmpty())
        return name;
    lastFolder = QFileInfo(name).absolutePath();
    if (!QFileInfo(name).suffix().isEmpty())
        return name;
    // The dialog asked about replacing the name typed, not this one.
    name += QLatin1Char('.') + extension;
    if (QFileInfo::exists(name)
        && prompter->message(this, QMessageBox::Question, tr("Replace file"),
                             tr("%1 already exists. Do you want to replace it?").arg(shown(name)),
                             QMessageBox::Yes | QMessageBox::No)
               != QMessageBox::Yes)
        return QString();
    return name;
}

void MainWindow::slotFileNew()
{
    if (!maybeSave())
        return;
    scene->reset();
    fileName.clear();
    slotFitCanvas();
    updateTitle();
}

void MainWindow::slotFileOpen()
{
    if (!maybeSave())
        return;
    const QString name = askOpenName(fileFilter);
    if (!name.isEmpty())
        openFile(name);
}

bool MainWindow::runFileOperation(const QString& name, const QString& title, const QString& failure,
                                  const std::function<void()>& operation)
{
    QString reason;
    try {
        operation();
        return true;
    } catch (const nu::JsonDataFile::FileOpenException&) {
        reason = tr("the file does not exist or cannot be read");
    } catch (const nu::JsonDataFile::WrongDescriptorException&) {
        reason = tr("it is not a Sorvik chart file");
    } catch (const nu::JsonDataFile::DifferentVersionException&) {
        reason = tr("it was saved by another version of Sorvik");
    } catch (const nu::graphics::SceneImage::WriteException&) {
        reason = tr("Check that its folder exists, that you may write there and that the disk is not full");
    }
    warn(title, failure.arg(shown(name), reason));
    return false;
}

bool MainWindow::openFile(const QString& name)
{
    int skipped = 0;
    if (!runFileOperation(name, tr("Problem opening file"), tr("%1 couldn't be opened: %2."),
                          [&] { skipped = scene->loadFromFile(Scene::getFileInfo(name)); }))
        return false;
    fileName = name;
    scene->setCursorMode(Mode::Select);
    slotFitCanvas();
    updateTitle();
    if (skipped > 0) {
        warn(tr("Problem opening file"),
             tr("%1 holds %2 item(s) of a kind this version of Sorvik does not know; they were left out.")
                 .arg(shown(name))
                 .arg(skipped));
    }
    return true;
}

bool MainWindow::slotFileSave()
{
    if (fileName.isEmpty())
        return slotFileSaveAs();
    return saveFile(fileName);
}

bool MainWindow::slotFileSaveAs()
{
    const QString name = askSaveName(fileFilter, QStringLiteral("pie"));
    return !name.isEmpty() && saveFile(name);
}

bool MainWindow::saveFile(const QString& name)
{
    commitEditing();
    try {
        scene->saveToFile(Scene::getFileInfo(name));
    } catch (const nu::JsonDataFile::FileOpenException&) {
        warn(tr("Problem saving file"),
             tr("%1 couldn't be saved: the file cannot be written. Check that its folder exists, that you may "
                "write there and that the disk is not full. The chart is still open.")
                 .arg(shown(name)));
        return false;
    }
    fileName = name;
    updateTitle();
    return true;
}

void MainWindow::slotFileImport()
{
    const QString name = askOpenName(fileFilter);
    if (!name.isEmpty())
        importFile(name);
}

bool MainWindow::importFile(const QString& name)
{
    commitEditing();
    if (!runFileOperation(name, tr("Problem importing file"), tr("%1 couldn't be imported: %2."),
                          [&] { scene->importFromFile(Scene::getFileInfo(name)); }))
        return false;
    slotFitCanvas();
    return true;
}

void MainWindow::slotFileExportSvg()
{
    const QString name = askSaveName(tr("SVG images (*.svg);;All files (*)"), QStringLiteral("svg"));
    if (!name.isEmpty())
        exportSvg(name);
}

void MainWindow::slotFileExportPng()
{
    commitEditing();
    ImageScaleDialog dialog(scene->getImageRect().size(), pngScale, this);
    if (prompter->exec(dialog) != QDialog::Accepted)
        return;
    pngScale = dialog.getScale();
    const QString name = askSaveName(tr("PNG images (*.png);;All files (*)"), QStringLiteral("png"));
    if (!name.isEmpty())
        exportPng(name, pngScale);
}

void MainWindow::slotFileExportPdf()
{
    const QString name = askSaveName(tr("PDF documents (*.pdf);;All files (*)"), QStringLiteral("pdf"));
    if (!name.isEmpty())
        exportPdf(name);
}

bool MainWindow::exportPdf(const QString& name)
{
    commitEditing();
    return runFileOperation(name, tr("Problem exporting image"), tr("%1 couldn't be written. %2."),
                            [&] { scene->saveToPdf(name); });
}

bool MainWindow::exportSvg(const QString& name)
{
    commitEditing();
    return runFileOperation(name, tr("Problem exporting image"), tr("%1 couldn't be written. %2."),
                            [&] { scene->saveToSvg(name); });
}

bool MainWindow::exportPng(const QString& name, double scale)
{
    commitEditing();
    return runFileOperation(name, tr("Problem exporting image"),
                            tr("%1 couldn't be written. %2; an image too large for the memory needs a smaller scale."),
                            [&] { scene->saveToPng(name, scale); });
}

void MainWindow::slotFitCanvas()
{
    scene->slotFitCanvas();
    // An empty chart shows a canvas of the size a new scene has.
    const QRectF drawing = scene->getDrawingRect();
    view->fitRect(drawing.isEmpty() ? Scene::defaultCanvas : scene->sceneRect());
}

void MainWindow::createPieChart(nu::graphics::PieChartTextItem* root)
{
    if (!root)
        return;
    scene->reset();
    scene->copyPieChart(*root);
    scene->setClean();
    fileName.clear();
    slotFitCanvas();
    updateTitle();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (maybeSave())
        event->accept();
    else
        event->ignore();
}

} // namespace Edit
} // namespace Sorvik
