#pragma once

#include "tests/support/foldercase.h"
#include "tests/support/scriptedprompter.h"

#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

class QDialog;

namespace Sorvik {
namespace Viewer {
class MainWindow;
class PieChartItem;
} // namespace Viewer
namespace Test {

using Script = std::function<int(QDialog&)>;

// What the viewer window tests share: a window with the case's folder for its settings, answered
// by a scripted prompter. Call start() from init() and stop() from cleanup().
class WindowCase : public FolderCase
{
public:
    WindowCase();
    ~WindowCase() override;

protected:
    void start();
    void stop();

    Viewer::PieChartItem* chart() const;
    QString centre() const;
    // The messages shown, as "Icon title: text".
    QStringList shown() const;
    // A new chart from the small Krona fixture, unsaved; what it showed is forgotten.
    void newKronaChart();
    // Writes the tree literal as a chart into the case's folder and opens it.
    void openTree(const QString& literal, const QString& name = QStringLiteral("saved.piechart"));
    // Selects a slice as a click in the browser does.
    void select(const QString& name);

    std::shared_ptr<ScriptedPrompter> prompter;
    std::unique_ptr<Viewer::MainWindow> window;
};

// Fills the new chart wizard as a user would and accepts it. For taxon ids, option is the format
// ("id" or "idcount"); for QIIME, the value column.
Script wizard(const QString& type, const QString& file, const QVariant& option = QVariant());
// A build's progress dialog: waits until the work closes it. A build report is closed.
int waitForClose(QDialog& dialog);
// Answers the first dialog with one script and the ones after it with another.
Script inTurn(Script first, Script then);

} // namespace Test
} // namespace Sorvik
