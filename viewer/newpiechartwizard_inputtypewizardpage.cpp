#include "viewer/newpiechartwizard_inputtypewizardpage.h"

#include "ui_newpiechartwizard_inputtypewizardpage.h"

namespace Sorvik {
namespace Viewer {

NewPieChartWizard_InputTypeWizardPage::NewPieChartWizard_InputTypeWizardPage(QWidget* parent)
    : QWizardPage(parent)
    , ui(std::make_unique<Ui::NewPieChartWizard_InputTypeWizardPage>())
{
    ui->setupUi(this);
    registerField(QStringLiteral("input-type-taxids"), ui->taxidsRadioButton);
    registerField(QStringLiteral("input-type-krona"), ui->kronaRadioButton);
    registerField(QStringLiteral("input-type-qiime"), ui->qiimeRadioButton);
    registerField(QStringLiteral("input-type-mgtaxa"), ui->mgtaxaRadioButton);
    for (QRadioButton* button : {ui->taxidsRadioButton, ui->kronaRadioButton, ui->qiimeRadioButton, ui->mgtaxaRadioButton})
        connect(button, &QRadioButton::toggled, this, &QWizardPage::completeChanged);
}

NewPieChartWizard_InputTypeWizardPage::~NewPieChartWizard_InputTypeWizardPage() = default;

int NewPieChartWizard_InputTypeWizardPage::nextId() const
{
    if (ui->taxidsRadioButton->isChecked())
        return 1;
    if (ui->kronaRadioButton->isChecked())
        return 3;
    if (ui->qiimeRadioButton->isChecked())
        return 4;
    if (ui->mgtaxaRadioButton->isChecked())
        return 2;
    return 0;
}

bool NewPieChartWizard_InputTypeWizardPage::isComplete() const
{
    // Nothing chosen yet: Next stays disabled rather than leading back to this page.
    return nextId() != 0;
}

} // namespace Viewer
} // namespace Sorvik
