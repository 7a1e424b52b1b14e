#include "viewer/newpiechartwizard_taxidssourcefilewizardpage.h"

#include "ui_newpiechartwizard_taxidssourcefilewizardpage.h"

namespace Sorvik {
namespace Viewer {

NewPieChartWizard_TaxidsSourceFileWizardPage::NewPieChartWizard_TaxidsSourceFileWizardPage(QWidget* parent)
    : NewPieChartWizard_SourceFileWizardPage(parent)
    , ui(std::make_unique<Ui::NewPieChartWizard_TaxidsSourceFileWizardPage>())
{
    ui->setupUi(this);
    setFileNameEdit(ui->fileNameLineEdit);
    registerField(QStringLiteral("taxids-source-filename"), ui->fileNameLineEdit);
    registerField(QStringLiteral("taxids-source-format-id"), ui->formatIdRadioButton);
    registerField(QStringLiteral("taxids-source-format-idcount"), ui->formatIdCountRadioButton);
}

NewPieChartWizard_TaxidsSourceFileWizardPage::~NewPieChartWizard_TaxidsSourceFileWizardPage() = default;

int NewPieChartWizard_TaxidsSourceFileWizardPage::nextId() const
{
    return -1;
}

} // namespace Viewer
} // namespace Sorvik
