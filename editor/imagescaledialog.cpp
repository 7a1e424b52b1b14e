#include "editor/imagescaledialog.h"

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace Sorvik {
namespace Edit {

ImageScaleDialog::ImageScaleDialog(const QSizeF& d, double scale, QWidget* parent)
    : QDialog(parent)
    , drawing(d.expandedTo(QSizeF(1, 1)))
{
    setWindowTitle(tr("Export PNG"));
    scaleBox = new QDoubleSpinBox(this);
    scaleBox->setObjectName(QStringLiteral("scaleBox"));
    scaleBox->setDecimals(2);
    scaleBox->setSingleStep(0.5);
    scaleBox->setSuffix(tr(" pixels per unit"));
    const double largest = maximumSide / std::max(drawing.width(), drawing.height());
    scaleBox->setRange(std::min(0.1, largest), std::max(0.1, std::min(50.0, largest)));
    sizeLabel = new QLabel(this);
    sizeLabel->setObjectName(QStringLiteral("sizeLabel"));

    auto* form = new QFormLayout;
    form->addRow(tr("Scale"), scaleBox);
    form->addRow(tr("Image size"), sizeLabel);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);

    connect(scaleBox, qOverload<double>(&QDoubleSpinBox::valueChanged), this, &ImageScaleDialog::updateSize);
    setScale(scale);
    updateSize();
}

double ImageScaleDialog::getScale() const
{
    return scaleBox->value();
}

void ImageScaleDialog::setScale(double scale)
{
    scaleBox->setValue(scale);
}

QSize ImageScaleDialog::getImageSize() const
{
    const double scale = getScale();
    return QSize(std::max(1, int(std::ceil(drawing.width() * scale - 1e-9))),
                 std::max(1, int(std::ceil(drawing.height() * scale - 1e-9))));
}

void ImageScaleDialog::updateSize()
{
    const QSize size = getImageSize();
    sizeLabel->setText(tr("%1 × %2 pixels").arg(size.width()).arg(size.height()));
}

} // namespace Edit
} // namespace Sorvik
