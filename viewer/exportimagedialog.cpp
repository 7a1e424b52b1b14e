#include "viewer/exportimagedialog.h"

#include "viewer/chartimage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

namespace Sorvik {
namespace Viewer {

ExportImageDialog::ExportImageDialog(QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Export image"));
    formatBox = new QComboBox(this);
    formatBox->setObjectName(QStringLiteral("formatBox"));
    formatBox->addItem(tr("PNG picture"), int(Format::Png));
    formatBox->addItem(tr("SVG drawing (texts stay editable)"), int(Format::Svg));
    formatBox->addItem(tr("PDF document (texts stay editable)"), int(Format::Pdf));
    sizeBox = new QSpinBox(this);
    sizeBox->setObjectName(QStringLiteral("sizeBox"));
    sizeBox->setRange(100, ChartImage::maximumSize);
    sizeBox->setSuffix(tr(" px"));
    sizeBox->setValue(ChartImage::defaultSize);
    sizeBox->setToolTip(tr("The longer side of the image"));
    dpiBox = new QSpinBox(this);
    dpiBox->setObjectName(QStringLiteral("dpiBox"));
    dpiBox->setRange(36, 2400);
    dpiBox->setSuffix(tr(" dpi"));
    dpiBox->setValue(300);
    dpiBox->setToolTip(tr("The resolution a PNG says it has: how large it prints"));
    printSize = new QLabel(this);
    legendBox = new QCheckBox(tr("Draw a legend beside the chart"), this);
    legendBox->setObjectName(QStringLiteral("legendBox"));
    titleEdit = new QLineEdit(this);
    titleEdit->setObjectName(QStringLiteral("titleEdit"));
    titleEdit->setPlaceholderText(tr("No title"));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* form = new QFormLayout(this);
    form->addRow(tr("Format"), formatBox);
    form->addRow(tr("Size"), sizeBox);
    form->addRow(tr("Resolution"), dpiBox);
    form->addRow(QString(), printSize);
    form->addRow(tr("Title"), titleEdit);
    form->addRow(QString(), legendBox);
    form->addRow(buttons);

    const auto update = [this] { updatePrintSize(); };
    connect(sizeBox, QOverload<int>::of(&QSpinBox::valueChanged), this, update);
    connect(dpiBox, QOverload<int>::of(&QSpinBox::valueChanged), this, update);
    connect(formatBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this, update);
    updatePrintSize();
}

void ExportImageDialog::updatePrintSize()
{
    // Vector images print at any size; a PNG's pixels spread over its resolution.
    const bool png = getFormat() == Format::Png;
    dpiBox->setEnabled(png);
    printSize->setText(png ? tr("prints %1 cm on its longer side").arg(getSize() * 2.54 / getDotsPerInch(), 0, 'f', 1)
                           : tr("vector drawing: the size sets the page"));
}

ExportImageDialog::Format ExportImageDialog::getFormat() const
{
    return Format(formatBox->currentData().toInt());
}

void ExportImageDialog::setFormat(Format format)
{
    formatBox->setCurrentIndex(std::max(0, formatBox->findData(int(format))));
}

int ExportImageDialog::getSize() const
{
    return sizeBox->value();
}

void ExportImageDialog::setSize(int pixels)
{
    sizeBox->setValue(pixels);
}

int ExportImageDialog::getDotsPerInch() const
{
    return dpiBox->value();
}

void ExportImageDialog::setDotsPerInch(int dpi)
{
    dpiBox->setValue(dpi);
}

bool ExportImageDialog::hasLegend() const
{
    return legendBox->isChecked();
}

void ExportImageDialog::setLegend(bool on)
{
    legendBox->setChecked(on);
}

QString ExportImageDialog::getTitle() const
{
    return titleEdit->text().simplified();
}

void ExportImageDialog::setTitle(const QString& title)
{
    titleEdit->setText(title);
}

QString ExportImageDialog::suffixOf(Format format)
{
    switch (format) {
    case Format::Svg:
        return QStringLiteral("svg");
    case Format::Pdf:
        return QStringLiteral("pdf");
    case Format::Png:
        break;
    }
    return QStringLiteral("png");
}

QString ExportImageDialog::filterOf(Format format)
{
    switch (format) {
    case Format::Svg:
        return tr("SVG images (*.svg)");
    case Format::Pdf:
        return tr("PDF documents (*.pdf)");
    case Format::Png:
        break;
    }
    return tr("PNG images (*.png)");
}

} // namespace Viewer
} // namespace Sorvik
