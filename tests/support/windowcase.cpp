#include "tests/support/windowcase.h"

#include "tests/support/fixtures.h"
#include "tests/support/treeliteral.h"

#include "resources/resources.h"
#include "viewer/browser.h"
#include "viewer/buildreportdialog.h"
#include "viewer/mainwindow.h"
#include "viewer/newpiechartwizard.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/settings.h"
#include "viewer/view.h"

#include <QEventLoop>
#include <QMetaEnum>
#include <QStandardPaths>
#include <QTimer>
#include <QTreeView>
#include <QtTest>

#include <algorithm>

namespace Sorvik {
namespace Test {

WindowCase::WindowCase()
{
    // The settings go to a test store, never to the user's own.
    QStandardPaths::setTestModeEnabled(true);
    initResources();
}

WindowCase::~WindowCase() = default;

void WindowCase::start()
{
    FolderCase::start();
    if (!dir || !dir->isValid())
        return;
    App::Settings().setPath(dir->path());
    prompter = std::make_shared<ScriptedPrompter>();
    window = std::make_unique<Viewer::MainWindow>();
    window->setPrompter(prompter);
}

void WindowCase::stop()
{
    // Nothing may be left to ask when the window goes.
    if (prompter)
        prompter->answers = {QMessageBox::No};
    window.reset();
    dir.reset();
}

Viewer::PieChartItem* WindowCase::chart() const
{
    return window->getView()->getScene()->getPieChart();
}

QString WindowCase::centre() const
{
    return chart() ? chart()->getText().text : QString();
}

QStringList WindowCase::shown() const
{
    QStringList result;
    for (const ScriptedPrompter::Shown& m : prompter->shown)
        result << QMetaEnum::fromType<QMessageBox::Icon>().valueToKey(m.icon) + (' ' + m.title) + ": " + m.text;
    return result;
}

void WindowCase::newKronaChart()
{
    prompter->onDialog = wizard(QStringLiteral("krona"), fixturePath(QStringLiteral("viewer/small.krona.txt")));
    window->slotFileNew();
    QVERIFY(chart());
    prompter->onDialog = nullptr;
    prompter->shown.clear();
    prompter->dialogs.clear();
}

void WindowCase::openTree(const QString& literal, const QString& name)
{
    writeTree(path(name), literal);
    window->openFile(path(name));
}

void WindowCase::select(const QString& name)
{
    QTreeView* tree = window->getBrowser()->getTreeView();
    // A slice drawn for a chain is listed with the whole chain, its own name last.
    QModelIndexList found = tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, name, -1,
                                                 Qt::MatchEndsWith | Qt::MatchRecursive);
    found.erase(std::remove_if(found.begin(), found.end(),
                               [&name](const QModelIndex& index) {
                                   const QString text = index.data().toString();
                                   return text != name && !text.endsWith(QStringLiteral(" \u203a ") + name);
                               }),
                found.end());
    QVERIFY2(!found.isEmpty(), qPrintable(name));
    tree->setCurrentIndex(found.first());
}

Script wizard(const QString& type, const QString& file, const QVariant& option)
{
    return [=](QDialog& dialog) {
        auto& wizard = dynamic_cast<Viewer::NewPiechartWizard&>(dialog);
        wizard.setField(QStringLiteral("input-type-") + type, true);
        // The formats without a page of their own, and detection, share the input file page.
        const bool ownPage = QStringList{"taxids", "mgtaxa", "krona", "qiime"}.contains(type);
        wizard.setField(ownPage ? type + QStringLiteral("-source-filename") : QStringLiteral("input-source-filename"), file);
        if (type == QLatin1String("taxids"))
            wizard.setField(QStringLiteral("taxids-source-format-") + option.toString(), true);
        if (type == QLatin1String("qiime")) {
            if (!wizard.page(Viewer::NewPiechartWizard::QiimeFile)->validatePage())
                return int(QDialog::Rejected);
            wizard.setField(QStringLiteral("qiime-source-column"), option.toInt());
        }
        return int(QDialog::Accepted);
    };
}

int waitForClose(QDialog& dialog)
{
    if (qobject_cast<Viewer::BuildReportDialog*>(&dialog))
        return QDialog::Rejected;
    QEventLoop loop;
    QObject::connect(&dialog, &QDialog::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    loop.exec();
    return dialog.result();
}

Script inTurn(Script first, Script then)
{
    return [first, then, calls = 0](QDialog& dialog) mutable { return (calls++ == 0 ? first : then)(dialog); };
}

} // namespace Test
} // namespace Sorvik
