#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QSpinBox;

namespace Sorvik {
namespace Viewer {

// The view settings of the drawn chart: how many rings, the smallest share (in percent) a slice
// needs to be drawn, whether single-child chains are drawn as one slice, the palette, and whether
// names are shown as stored.
class ViewPreferencesDialog : public QDialog
{
    Q_OBJECT
public:
    ViewPreferencesDialog(int maxLevels, double minPercentage, QWidget* parent = nullptr);

    int getMaxLevels() const;
    double getMinPercentage() const;
    void setMaxLevels(int levels);
    void setMinPercentage(double percentage);
    bool isCollapsing() const;
    void setCollapsing(bool on);
    // A name of Palette::names().
    QString getPalette() const;
    void setPalette(const QString& name);
    bool isShowingRawNames() const;
    void setShowingRawNames(bool on);

private:
    QSpinBox* levelsBox = nullptr;
    QDoubleSpinBox* percentageBox = nullptr;
    QCheckBox* collapseBox = nullptr;
    QComboBox* paletteBox = nullptr;
    QCheckBox* rawNamesBox = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
