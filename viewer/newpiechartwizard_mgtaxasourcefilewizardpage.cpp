#include "viewer/newpiechartwizard_mgtaxasourcefilewizardpage.h"

#include "ui_newpiechartwizard_mgtaxasourcefilewizardpage.h"

namespace Sorvik {
namespace Viewer {

NewPieChartWizard_MgTaxaSourceFileWizardPage::NewPieChartWizard_MgTaxaSourceFileWizardPage(QWidget* parent)
    : NewPieChartWizard_SourceFileWizardPage(parent)
    , ui(std::make_unique<Ui::NewPieChartWizard_MgTaxaSourceFileWizardPage>())
{
    ui->setupUi(this);
    setFileNameEdit(ui->fileNameLineEdit);
    registerField(QStringLiteral("mgtaxa-source-filename"), ui->fileNameLineEdit);
}

NewPieChartWizard_MgTaxaSourceFileWizardPage::~NewPieChartWizard_MgTaxaSourceFileWizardPage() = default;

int NewPieChartWizard_MgTaxaSourceFileWizardPage::nextId() const
{
    return -1;
}

} // namespace Viewer
} // namespace Sorvik
