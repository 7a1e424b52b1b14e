#include "viewer/newpiechartwizard_qiimesourcecolumnwizardpage.h"

#include "ui_newpiechartwizard_qiimesourcecolumnwizardpage.h"

namespace Sorvik {
namespace Viewer {

NewPieChartWizard_QiimeSourceColumnWizardPage::NewPieChartWizard_QiimeSourceColumnWizardPage(QWidget* parent)
    : QWizardPage(parent)
    , ui(std::make_unique<Ui::NewPieChartWizard_QiimeSourceColumnWizardPage>())
{
    ui->setupUi(this);
    registerField(QStringLiteral("qiime-source-column"), ui->columnListWidget, "currentRow", SIGNAL(currentRowChanged(int)));
    registerField(QStringLiteral("qiime-source-all-columns"), ui->allColumnsCheckBox);
    connect(ui->columnListWidget, &QListWidget::itemSelectionChanged, this, &QWizardPage::completeChanged);
    connect(ui->allColumnsCheckBox, &QCheckBox::toggled, this, [this](bool all) {
        // All columns leave nothing to pick, and show as all chosen.
        if (all)
            ui->columnListWidget->selectAll();
        ui->columnListWidget->setEnabled(!all);
        emit completeChanged();
    });
}

NewPieChartWizard_QiimeSourceColumnWizardPage::~NewPieChartWizard_QiimeSourceColumnWizardPage() = default;

int NewPieChartWizard_QiimeSourceColumnWizardPage::nextId() const
{
    return -1;
}

bool NewPieChartWizard_QiimeSourceColumnWizardPage::isComplete() const
{
    return !getChosenColumns().isEmpty();
}

QStringList NewPieChartWizard_QiimeSourceColumnWizardPage::getColumns() const
{
    QStringList columns;
    for (int i = 0; i < ui->columnListWidget->count(); ++i)
        columns << ui->columnListWidget->item(i)->text();
    return columns;
}

QList<int> NewPieChartWizard_QiimeSourceColumnWizardPage::getChosenColumns() const
{
    QList<int> chosen;
    for (int i = 0; i < ui->columnListWidget->count(); ++i) {
        if (isAllColumns() || ui->columnListWidget->item(i)->isSelected())
            chosen << i;
    }
    return chosen;
}

bool NewPieChartWizard_QiimeSourceColumnWizardPage::isAllColumns() const
{
    return ui->allColumnsCheckBox->isChecked();
}

void NewPieChartWizard_QiimeSourceColumnWizardPage::slotSourceColumnsRetrieved(const QStringList& columns)
{
    ui->columnListWidget->clear();
    ui->columnListWidget->addItems(columns);
    // One sample, the first, until the user picks others.
    ui->columnListWidget->setCurrentRow(0);
    emit completeChanged();
}

} // namespace Viewer
} // namespace Sorvik
