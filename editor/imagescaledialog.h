#pragma once

#include <QDialog>
#include <QSizeF>

class QDoubleSpinBox;
class QLabel;

namespace Sorvik {
namespace Edit {

// Asks how large a PNG of the drawing is to be: a scale in pixels per scene unit, with the
// image's size in pixels shown as it changes. The scale is limited so that no side of the image
// exceeds maximumSide pixels.
class ImageScaleDialog : public QDialog
{
    Q_OBJECT
public:
    static constexpr int maximumSide = 10000;

    // drawing: the size of what the image shows, in scene units.
    ImageScaleDialog(const QSizeF& drawing, double scale, QWidget* parent = nullptr);

    double getScale() const;
    void setScale(double scale);
    // The image's size at the chosen scale.
    QSize getImageSize() const;

private:
    void updateSize();

    QSizeF drawing;
    QDoubleSpinBox* scaleBox = nullptr;
    QLabel* sizeLabel = nullptr;
};

} // namespace Edit
} // namespace Sorvik
