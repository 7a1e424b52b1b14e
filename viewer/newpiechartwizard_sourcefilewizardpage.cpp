#include "viewer/newpiechartwizard_sourcefilewizardpage.h"

#include "viewer/settings.h"

#include <QFileDialog>
#include <QLineEdit>

namespace Sorvik {
namespace Viewer {

namespace {
const QString folderPurpose = QStringLiteral("input");
}

QString NewPieChartWizard_SourceFileWizardPage::getFileName() const
{
    return fileNameEdit ? fileNameEdit->text() : QString();
}

void NewPieChartWizard_SourceFileWizardPage::setFileName(const QString& fileName)
{
    if (fileNameEdit)
        fileNameEdit->setText(fileName);
}

void NewPieChartWizard_SourceFileWizardPage::setFileNameEdit(QLineEdit* edit)
{
    fileNameEdit = edit;
}

void NewPieChartWizard_SourceFileWizardPage::on_selectFileNameButton_clicked()
{
    App::Settings settings;
    const QString fileName = QFileDialog::getOpenFileName(this, QString(), settings.getLastFolder(folderPurpose));
    if (fileName.isEmpty())
        return;
    settings.setLastFolder(folderPurpose, fileName);
    setFileName(fileName);
}

} // namespace Viewer
} // namespace Sorvik
