#include "viewer/viewpreferencesdialog.h"

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QSpinBox>
#include <QVBoxLayout>

namespace Sorvik {
namespace Viewer {

ViewPreferencesDialog::ViewPreferencesDialog(int maxLevels, double minPercentage, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("View preferences"));
    levelsBox = new QSpinBox(this);
    levelsBox->setObjectName(QStringLiteral("levelsBox"));
    levelsBox->setRange(1, 20);
    percentageBox = new QDoubleSpinBox(this);
    percentageBox->setObjectName(QStringLiteral("percentageBox"));
    percentageBox->setRange(0.0, 100.0);
    percentageBox->setDecimals(2);
    percentageBox->setSingleStep(0.1);
    percentageBox->setSuffix(QStringLiteral(" %"));
    setMaxLevels(maxLevels);
    setMinPercentage(minPercentage);

    auto* form = new QFormLayout;
    form->addRow(tr("Maximum levels"), levelsBox);
    form->addRow(tr("Minimum percentage"), percentageBox);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

int ViewPreferencesDialog::getMaxLevels() const
{
    return levelsBox->value();
}

double ViewPreferencesDialog::getMinPercentage() const
{
    return percentageBox->value();
}

void ViewPreferencesDialog::setMaxLevels(int levels)
{
    levelsBox->setValue(levels);
}

void ViewPreferencesDialog::setMinPercentage(double percentage)
{
    percentageBox->setValue(percentage);
}

} // namespace Viewer
} // namespace Sorvik
