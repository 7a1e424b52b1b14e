#include "viewer/newpiechartwizard_sourcefilewizardpage.h"

#include "viewer/settings.h"

#include <QFileDialog>
#include <QLineEdit>

namespace Sorvik {
namespace Viewer {

namespace {
const QString folderPurpose = QStringLiteral("input");
}

QStringList NewPieChartWizard_SourceFileWizardPage::splitFileNames(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (!trimmed.startsWith(QLatin1Char('"')))
        return trimmed.isEmpty() ? QStringList() : QStringList{text};
    // File names hold no double quotes on the systems the viewer runs on; one left open ends
    // at the end of the text.
    QStringList names;
    int at = 0;
    while ((at = trimmed.indexOf(QLatin1Char('"'), at)) >= 0) {
        const int end = trimmed.indexOf(QLatin1Char('"'), at + 1);
        const QString name = trimmed.mid(at + 1, end < 0 ? -1 : end - at - 1);
        if (!name.isEmpty())
            names << name;
        if (end < 0)
            break;
        at = end + 1;
    }
    return names;
}

QString NewPieChartWizard_SourceFileWizardPage::joinFileNames(const QStringList& fileNames)
{
    if (fileNames.size() == 1)
        return fileNames.front();
    QStringList quoted;
    for (const QString& name : fileNames)
        quoted << QLatin1Char('"') + name + QLatin1Char('"');
    return quoted.join(QLatin1Char(' '));
}

QString NewPieChartWizard_SourceFileWizardPage::getFileName() const
{
    return getFileNames().value(0);
}

QStringList NewPieChartWizard_SourceFileWizardPage::getFileNames() const
{
    return fileNameEdit ? splitFileNames(fileNameEdit->text()) : QStringList();
}

void NewPieChartWizard_SourceFileWizardPage::setFileName(const QString& fileName)
{
    if (fileNameEdit)
        fileNameEdit->setText(fileName);
}

void NewPieChartWizard_SourceFileWizardPage::setFileNames(const QStringList& fileNames)
{
    setFileName(joinFileNames(fileNames));
}

bool NewPieChartWizard_SourceFileWizardPage::isComplete() const
{
    return !getFileNames().isEmpty();
}

void NewPieChartWizard_SourceFileWizardPage::setFileNameEdit(QLineEdit* edit)
{
    fileNameEdit = edit;
    connect(edit, &QLineEdit::textChanged, this, &QWizardPage::completeChanged);
}

void NewPieChartWizard_SourceFileWizardPage::on_selectFileNameButton_clicked()
{
    App::Settings settings;
    // Several files of one format make a chart of several samples.
    const QStringList fileNames = QFileDialog::getOpenFileNames(this, QString(), settings.getLastFolder(folderPurpose));
    if (fileNames.isEmpty())
        return;
    settings.setLastFolder(folderPurpose, fileNames.front());
    setFileNames(fileNames);
}

} // namespace Viewer
} // namespace Sorvik
