#pragma once

#include <QDialog>
#include <QList>
#include <QStringList>

class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QListWidget;

namespace Sorvik {
namespace Viewer {

// Chooses the samples that View > Compare draws side by side: a list of the chart's samples to
// tick, with their totals and a box that finds them by name. OK takes between minimumChosen and
// maximumChosen of them.
class CompareDialog : public QDialog
{
    Q_OBJECT
public:
    static constexpr int minimumChosen = 2;
    // More would make each chart too small to read.
    static constexpr int maximumChosen = 12;

    CompareDialog(const QStringList& names, const QList<qint64>& totals, QWidget* parent = nullptr);
    ~CompareDialog() override;

    // Ticks these samples (by index), and only these; indexes out of range are ignored.
    void setChosen(const QList<int>& samples);
    // The ticked samples in the chart's order.
    QList<int> getChosen() const;
    // Whether OK can be pressed.
    bool isAcceptable() const;

    // The samples to choose from when none were compared before: the current one and those after
    // it, as many as fit the grid (fewer when the chart has fewer).
    static QList<int> defaultChoice(int current, int count);

    QListWidget* getList() const { return list; }
    QLineEdit* getFilter() const { return filter; }

private:
    void updateState();
    void slotFilterChanged(const QString& text);

    QLineEdit* filter = nullptr;
    QListWidget* list = nullptr;
    QLabel* notice = nullptr;
    QDialogButtonBox* buttons = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
