#pragma once

#include "nu/graphics/sceneimage.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace Sorvik {
namespace Viewer {

// The options of an exported image: its format (PNG, SVG or PDF), its size in pixels (the longer
// side) and, for PNG, the resolution it says it has, with the print size that gives; a legend
// beside the chart; and a title above it.
class ExportImageDialog : public QDialog
{
    Q_OBJECT
public:
    using Format = nu::graphics::SceneImage::Format;

    explicit ExportImageDialog(QWidget* parent = nullptr);

    Format getFormat() const;
    void setFormat(Format format);
    int getSize() const;
    void setSize(int pixels);
    int getDotsPerInch() const;
    void setDotsPerInch(int dpi);
    bool hasLegend() const;
    void setLegend(bool on);
    QString getTitle() const;
    void setTitle(const QString& title);

    // The file name's extension and the file dialog's filter for a format.
    static QString suffixOf(Format format);
    static QString filterOf(Format format);

private:
    void updatePrintSize();

    QComboBox* formatBox = nullptr;
    QSpinBox* sizeBox = nullptr;
    QSpinBox* dpiBox = nullptr;
    QLabel* printSize = nullptr;
    QCheckBox* legendBox = nullptr;
    QLineEdit* titleEdit = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
