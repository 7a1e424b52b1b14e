#pragma once

#include <QDialog>

class QDoubleSpinBox;
class QSpinBox;

namespace Sorvik {
namespace Viewer {

// The view settings of the drawn chart: how many rings, and the smallest share (in percent) a
// slice needs to be drawn.
class ViewPreferencesDialog : public QDialog
{
    Q_OBJECT
public:
    ViewPreferencesDialog(int maxLevels, double minPercentage, QWidget* parent = nullptr);

    int getMaxLevels() const;
    double getMinPercentage() const;
    void setMaxLevels(int levels);
    void setMinPercentage(double percentage);

private:
    QSpinBox* levelsBox = nullptr;
    QDoubleSpinBox* percentageBox = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
