#include "viewer/chartexports.h"

#include "nu/graphics/sceneimage.h"
#include "nu/prompter.h"
#include "viewer/charthtml.h"
#include "viewer/chartimage.h"
#include "viewer/chartlegend.h"
#include "viewer/charttable.h"
#include "viewer/charttree.h"
#include "viewer/exportimagedialog.h"
#include "viewer/mainwindow.h"
#include "viewer/piechartitem.h"
#include "viewer/settings.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QGraphicsScene>
#include <QScopeGuard>

namespace Sorvik {
namespace Viewer {

namespace {

// File dialogs for exports open where the last export went.
const QString exportFolder = QStringLiteral("export");

} // namespace

ChartExports::ChartExports(QWidget* w, std::function<Source()> s)
    : QObject(w)
    , window(w)
    , source(std::move(s))
    , prompter(std::make_shared<nu::Prompter>())
    , image(new QAction(tr("Export image…"), this))
    , table(new QAction(tr("Export table…"), this))
    , html(new QAction(tr("Export interactive HTML…"), this))
{
    image->setStatusTip(tr("Write the chart as shown as a PNG, SVG or PDF image"));
    table->setStatusTip(tr("Write the counts of every taxon of the chart as a TSV or CSV table"));
    html->setStatusTip(tr("Write the chart as one web page that opens in any browser, without Sorvik"));
    for (QAction* action : getActions())
        action->setToolTip(action->statusTip());
    connect(image, &QAction::triggered, this, &ChartExports::slotExportImage);
    connect(table, &QAction::triggered, this, &ChartExports::slotExportTable);
    connect(html, &QAction::triggered, this, &ChartExports::slotExportHtml);
    setEnabled(false);
}

void ChartExports::setPrompter(std::shared_ptr<nu::Prompter> p)
{
    if (p)
        prompter = std::move(p);
}

QList<QAction*> ChartExports::getActions() const
{
    return {image, table, html};
}

void ChartExports::setEnabled(bool enabled)
{
    for (QAction* action : getActions())
        action->setEnabled(enabled);
}

QString ChartExports::defaultTitle(const Source& from) const
{
    const QFileInfo file(from.fileName);
    // A new chart not yet saved lives in the working file, whose name says nothing.
    return from.fileName.isEmpty() || file.fileName() == MainWindow::workingFileName ? QString()
                                                                                      : file.completeBaseName();
}

QString ChartExports::askSaveName(const QString& filter, const QString& extension)
{
    App::Settings settings;
    QString name = prompter->getSaveFileName(window, settings.getLastFolder(exportFolder), filter);
    if (name.isEmpty())
        return name;
    settings.setLastFolder(exportFolder, name);
    if (!QFileInfo(name).suffix().isEmpty())
        return name;
    // The dialog asked about replacing the name typed, not this one.
    name += QLatin1Char('.') + extension;
    if (QFileInfo::exists(name)
        && prompter->message(window, QMessageBox::Question, tr("Replace file"),
                             tr("%1 already exists. Do you want to replace it?").arg(QDir::toNativeSeparators(name)),
                             QMessageBox::Yes | QMessageBox::No)
               != QMessageBox::Yes)
        return QString();
    return name;
}

bool ChartExports::run(const QString& fileName, const std::function<void(const Source&)>& write)
{
    const Source from = source();
    QString reason;
    bool unwritten = false;
    if (!from.chart || !from.tree || !from.colours) {
        reason = tr("no chart is open");
    } else {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        try {
            write(from);
        } catch (const nu::graphics::SceneImage::WriteException& e) {
            reason = QString::fromUtf8(e.what());
            unwritten = true;
        } catch (const ChartTable::WriteException& e) {
            reason = QString::fromUtf8(e.what());
            unwritten = true;
        } catch (const ChartHtml::WriteException& e) {
            reason = QString::fromUtf8(e.what());
            unwritten = true;
        } catch (const std::exception& e) {
            reason = QString::fromUtf8(e.what());
        }
        QApplication::restoreOverrideCursor();
    }
    if (reason.isEmpty())
        return true;
    QString text = tr("%1 couldn't be written: %2.").arg(QDir::toNativeSeparators(fileName), reason);
    if (unwritten)
        text += tr(" Check that its folder exists, that you may write there and that the disk is not full.");
    prompter->message(window, QMessageBox::Warning, tr("Problem exporting"), text, QMessageBox::Ok);
    return false;
}

void ChartExports::slotExportImage()
{
    const Source from = source();
    if (!from.chart)
        return;
    ExportImageDialog dialog(window);
    dialog.setFormat(ExportImageDialog::Format(imageFormat));
    dialog.setSize(imageSize > 0 ? imageSize : ChartImage::defaultSize);
    dialog.setDotsPerInch(imageDotsPerInch);
    dialog.setLegend(imageLegend);
    dialog.setTitle(defaultTitle(from));
    if (prompter->exec(dialog) != QDialog::Accepted)
        return;
    imageFormat = int(dialog.getFormat());
    imageSize = dialog.getSize();
    imageDotsPerInch = dialog.getDotsPerInch();
    imageLegend = dialog.hasLegend();
    const QString name = askSaveName(ExportImageDialog::filterOf(dialog.getFormat()),
                                     ExportImageDialog::suffixOf(dialog.getFormat()));
    if (!name.isEmpty())
        exportImage(name, imageSize, dialog.getFormat() == ExportImageDialog::Format::Png ? imageDotsPerInch : 0,
                    imageLegend, dialog.getTitle());
}

bool ChartExports::exportImage(const QString& fileName, int size, int dotsPerInch, bool legend, const QString& title)
{
    return run(fileName, [&](const Source& from) {
        // The chart as shown, without the slice the user happened to have selected.
        QList<QGraphicsItem*> selected;
        if (QGraphicsScene* scene = from.chart->scene())
            selected = scene->selectedItems();
        for (QGraphicsItem* item : selected)
            item->setSelected(false);
        const auto reselect = qScopeGuard([&] {
            for (QGraphicsItem* item : selected)
                item->setSelected(true);
        });
        ChartImage picture(*from.chart);
        picture.setSize(size);
        picture.setDotsPerInch(dotsPerInch);
        picture.setTitle(title);
        if (legend)
            picture.setLegend(ChartLegend::of(*from.tree, *from.colours, from.rawNames));
        picture.save(fileName);
    });
}

void ChartExports::slotExportTable()
{
    const QString name =
        askSaveName(tr("Tab-separated tables (*.tsv);;Comma-separated tables (*.csv)"), QStringLiteral("tsv"));
    if (!name.isEmpty())
        exportTable(name);
}

bool ChartExports::exportTable(const QString& fileName)
{
    return run(fileName, [&](const Source& from) {
        // A chart of several samples: all of them added up, then a column for each.
        const ChartTree all = from.tree->getSampleCount() > 1 ? from.tree->ofSample(ChartTree::allSamples) : ChartTree();
        ChartTable numbers(from.tree->getSampleCount() > 1 ? all : *from.tree);
        numbers.addSamplesOf(*from.tree);
        numbers.setRawNames(from.rawNames);
        numbers.save(fileName, ChartTable::formatOf(fileName));
    });
}

void ChartExports::slotExportHtml()
{
    const QString name = askSaveName(tr("Web pages (*.html)"), QStringLiteral("html"));
    if (!name.isEmpty())
        exportHtml(name);
}

bool ChartExports::exportHtml(const QString& fileName)
{
    return run(fileName, [&](const Source& from) {
        // A chart of several samples: the page starts on the first, with a chooser for the others.
        const ChartTree first = from.tree->getSampleCount() > 1 ? from.tree->ofSample(0) : ChartTree();
        ChartHtml page(from.tree->getSampleCount() > 1 ? first : *from.tree, *from.colours);
        const QString title = defaultTitle(from);
        page.setTitle(title);
        page.setFirstSampleName(title);
        page.addSamplesOf(*from.tree);
        page.setView(from.maxLevels, from.minPercent, from.collapse);
        page.setRawNames(from.rawNames);
        page.setCentre(from.centre);
        page.save(fileName);
    });
}

} // namespace Viewer
} // namespace Sorvik
