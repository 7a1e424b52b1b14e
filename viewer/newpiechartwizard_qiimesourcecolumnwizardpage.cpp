#include "viewer/newpiechartwizard_qiimesourcecolumnwizardpage.h"

#include "ui_newpiechartwizard_qiimesourcecolumnwizardpage.h"

namespace Sorvik {
namespace Viewer {

NewPieChartWizard_QiimeSourceColumnWizardPage::NewPieChartWizard_QiimeSourceColumnWizardPage(QWidget* parent)
    : QWizardPage(parent)
    , ui(std::make_unique<Ui::NewPieChartWizard_QiimeSourceColumnWizardPage>())
{
    ui->setupUi(this);
    registerField(QStringLiteral("qiime-source-column"), ui->columnComboBox, "currentIndex",
                  SIGNAL(currentIndexChanged(int)));
}

NewPieChartWizard_QiimeSourceColumnWizardPage::~NewPieChartWizard_QiimeSourceColumnWizardPage() = default;

int NewPieChartWizard_QiimeSourceColumnWizardPage::nextId() const
{
    return -1;
}

QStringList NewPieChartWizard_QiimeSourceColumnWizardPage::getColumns() const
{
    QStringList columns;
    for (int i = 0; i < ui->columnComboBox->count(); ++i)
        columns << ui->columnComboBox->itemText(i);
    return columns;
}

void NewPieChartWizard_QiimeSourceColumnWizardPage::slotSourceColumnsRetrieved(const QStringList& columns)
{
    ui->columnComboBox->clear();
    ui->columnComboBox->addItems(columns);
}

} // namespace Viewer
} // namespace Sorvik
