#pragma once

#include "editor/scene.h"

#include <QMainWindow>
#include <QMessageBox>

#include <functional>
#include <map>
#include <memory>

class QAction;
class QActionGroup;
class QDockWidget;
class QToolButton;

namespace nu {
class Prompter;
namespace edit {
class PropertiesWidget;
}
namespace graphics {
class PieChartTextItem;
}
} // namespace nu

namespace Sorvik {
namespace Edit {

class View;

// The chart editor's window: the editor scene in a view, the properties sheet in a dock, chart
// files (open, save, import), image export, undo, the insert tools and paint mode. Every message
// box, file dialog and modal dialog goes through its prompter. A chart with unsaved changes is
// not closed, replaced or opened over without asking.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    // The window's actions; the window owns them.
    class Actions
    {
    public:
        explicit Actions(MainWindow* window);

        QAction* fileNew = nullptr;
        QAction* fileOpen = nullptr;
        QAction* fileSave = nullptr;
        QAction* fileSaveAs = nullptr;
        QAction* fileImport = nullptr;
        QAction* fileExportSvg = nullptr;
        QAction* fileExportPng = nullptr;
        QAction* fileExportPdf = nullptr;
        QAction* fileClose = nullptr;
        QAction* editUndo = nullptr;
        QAction* editRedo = nullptr;
        QAction* editDelete = nullptr;
        QAction* editFitCanvas = nullptr;
        QAction* editShowSubSpaces = nullptr;
        // The cursor modes, one checked at a time; Paint is one of them.
        QActionGroup* modes = nullptr;
        std::map<Scene::CursorMode, QAction*> mode;
        QAction* paintColor = nullptr;
    };

    static const QString fileFilter;

    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    void setPrompter(std::shared_ptr<nu::Prompter> prompter);

    // Replaces the chart by an editable copy of a viewer's chart (the slice and everything
    // outside it); the chart stays its owner's. The copy is a new, untitled chart with nothing
    // to save yet. Null leaves the editor as it is.
    void createPieChart(nu::graphics::PieChartTextItem* root);

    // The file operations once a file is chosen; failures are shown and return false.
    bool openFile(const QString& fileName);
    bool saveFile(const QString& fileName);
    bool importFile(const QString& fileName);
    bool exportSvg(const QString& fileName);
    bool exportPng(const QString& fileName, double scale);
    bool exportPdf(const QString& fileName);

    Scene& getScene() const { return *scene; }
    View* getView() const { return view; }
    nu::edit::PropertiesWidget* getPropertiesWidget() const { return sheet; }
    const Actions& getActions() const { return *actions; }
    // Empty for an untitled chart.
    QString getFileName() const { return fileName; }
    void setPaintColor(const QColor& color);

public slots:
    void slotFileNew();
    void slotFileOpen();
    // False when the chart was not saved (cancelled or failed).
    bool slotFileSave();
    bool slotFileSaveAs();
    void slotFileImport();
    void slotFileExportSvg();
    void slotFileExportPng();
    void slotFileExportPdf();
    void slotFitCanvas();
    void slotChoosePaintColor();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void createMenusAndToolBars();
    void connectScene();
    void updateTitle();
    void updateUndoActions();
    void cursorModeChanged(Scene::CursorMode mode);
    // Brings a new item into sight.
    void showNewItem(nu::edit::PropertyItem::Id id);
    // Applies an edit still under way in the properties sheet, as leaving its field would.
    void commitEditing();
    // Asks whether to save unsaved changes; false when the user cancelled or the save failed.
    bool maybeSave();
    // Asks for a file name to write, with the extension added when none was typed; empty when
    // cancelled.
    QString askSaveName(const QString& filter, const QString& extension);
    QString askOpenName(const QString& filter);
    void warn(const QString& title, const QString& text);
    // Runs a file operation on name; when it throws one of the chart file's or the image's
    // exceptions, warns under title with failure (%1 the file, %2 why) and returns false.
    bool runFileOperation(const QString& name, const QString& title, const QString& failure,
                          const std::function<void()>& operation);

    std::shared_ptr<nu::Prompter> prompter;
    std::unique_ptr<Scene::ItemManager> manager;
    std::unique_ptr<Scene> scene;
    std::unique_ptr<Actions> actions;
    View* view = nullptr;
    QDockWidget* dock = nullptr;
    nu::edit::PropertiesWidget* sheet = nullptr;
    QToolButton* colorButton = nullptr;
    QString fileName;
    QString lastFolder;
    double pngScale = 4.0;
};

} // namespace Edit
} // namespace Sorvik
