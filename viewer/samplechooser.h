#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

class QAction;
class QComboBox;
class QToolBar;
class QWidget;

namespace Sorvik {
namespace Viewer {

// Chooses which sample of a chart of several is drawn: a combo box of the samples' names for a
// tool bar, and Previous and Next sample actions (Ctrl+PgUp, Ctrl+PgDown) that stop at the ends.
// It knows only the names, the totals and the current index; whoever owns it draws. With fewer
// than two samples there is nothing to choose: it is hidden and its actions are disabled.
class SampleChooser : public QObject
{
    Q_OBJECT
public:
    // window: where the shortcuts work.
    explicit SampleChooser(QWidget* window);
    ~SampleChooser() override;

    // Puts Previous, the combo box and Next on the tool bar; the bar is shown only while there
    // is a sample to choose.
    void addTo(QToolBar* toolBar);

    // The samples in their order, the first current; totals (one per name) show in tool tips.
    void setSamples(const QStringList& names, const QList<qint64>& totals = QList<qint64>());
    void clear() { setSamples(QStringList()); }
    int getCount() const { return names.size(); }
    QStringList getNames() const { return names; }
    QList<qint64> getTotals() const { return totals; }

    int getCurrent() const { return current; }
    // Shows this sample as the current one without a signal; out of range is ignored.
    void setCurrent(int sample);
    bool isShown() const { return names.size() > 1; }

    QComboBox* getComboBox() const { return combo; }
    QAction* getPrevious() const { return previous; }
    QAction* getNext() const { return next; }

public slots:
    void slotPrevious();
    void slotNext();

signals:
    // The user chose another sample.
    void signalSampleChosen(int sample);

private:
    void choose(int sample);
    void updateState();

    QStringList names;
    QList<qint64> totals;
    int current = 0;
    QComboBox* combo = nullptr;
    QAction* previous = nullptr;
    QAction* next = nullptr;
    QAction* comboAction = nullptr;
    QToolBar* bar = nullptr;
    bool quiet = false;
};

} // namespace Viewer
} // namespace Sorvik
