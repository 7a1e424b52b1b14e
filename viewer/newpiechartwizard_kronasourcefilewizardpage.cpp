#include "viewer/newpiechartwizard_kronasourcefilewizardpage.h"

#include "ui_newpiechartwizard_kronasourcefilewizardpage.h"

namespace Sorvik {
namespace Viewer {

NewPieChartWizard_KronaSourceFileWizardPage::NewPieChartWizard_KronaSourceFileWizardPage(QWidget* parent)
    : NewPieChartWizard_SourceFileWizardPage(parent)
    , ui(std::make_unique<Ui::NewPieChartWizard_KronaSourceFileWizardPage>())
{
    ui->setupUi(this);
    setFileNameEdit(ui->fileNameLineEdit);
    registerField(QStringLiteral("krona-source-filename"), ui->fileNameLineEdit);
    registerField(QStringLiteral("krona-source-format-text"), ui->formatTextRadioButton);
}

NewPieChartWizard_KronaSourceFileWizardPage::~NewPieChartWizard_KronaSourceFileWizardPage() = default;

int NewPieChartWizard_KronaSourceFileWizardPage::nextId() const
{
    return -1;
}

} // namespace Viewer
} // namespace Sorvik
