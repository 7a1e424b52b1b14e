#include "viewer/viewpreferencesdialog.h"

#include "viewer/palette.h"

#include <QCheckBox>
#include <QComboBox>
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
    collapseBox = new QCheckBox(tr("Draw single-child chains as one ring"), this);
    collapseBox->setObjectName(QStringLiteral("collapseBox"));
    collapseBox->setChecked(true);
    paletteBox = new QComboBox(this);
    paletteBox->setObjectName(QStringLiteral("paletteBox"));
    for (const QString& name : Palette::names())
        paletteBox->addItem(Palette::title(name), name);
    rawNamesBox = new QCheckBox(tr("Show names as stored (rank prefixes, underscores)"), this);
    rawNamesBox->setObjectName(QStringLiteral("rawNamesBox"));

    auto* form = new QFormLayout;
    form->addRow(tr("Maximum levels"), levelsBox);
    form->addRow(tr("Minimum percentage"), percentageBox);
    form->addRow(tr("Colours"), paletteBox);
    form->addRow(QString(), collapseBox);
    form->addRow(QString(), rawNamesBox);
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

bool ViewPreferencesDialog::isCollapsing() const
{
    return collapseBox->isChecked();
}

void ViewPreferencesDialog::setCollapsing(bool on)
{
    collapseBox->setChecked(on);
}

QString ViewPreferencesDialog::getPalette() const
{
    return paletteBox->currentData().toString();
}

void ViewPreferencesDialog::setPalette(const QString& name)
{
    const int index = paletteBox->findData(name);
    paletteBox->setCurrentIndex(index < 0 ? 0 : index);
}

bool ViewPreferencesDialog::isShowingRawNames() const
{
    return rawNamesBox->isChecked();
}

void ViewPreferencesDialog::setShowingRawNames(bool on)
{
    rawNamesBox->setChecked(on);
}

} // namespace Viewer
} // namespace Sorvik
