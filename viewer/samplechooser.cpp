#include "viewer/samplechooser.h"

#include <QAction>
#include <QComboBox>
#include <QIcon>
#include <QLocale>
#include <QToolBar>

namespace Sorvik {
namespace Viewer {

SampleChooser::SampleChooser(QWidget* window)
    : QObject(window)
    , combo(new QComboBox(window))
    , previous(new QAction(tr("Previous sample"), window))
    , next(new QAction(tr("Next sample"), window))
{
    combo->setObjectName(QStringLiteral("sampleCombo"));
    combo->setToolTip(tr("The sample drawn"));
    // Long sample names do not widen the tool bar past reason; the list shows them whole.
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(16);
    combo->setMaxVisibleItems(24);
    combo->hide();

    previous->setObjectName(QStringLiteral("previousSample"));
    previous->setIcon(QIcon(QStringLiteral(":/icons/go-previous.svg")));
    previous->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageUp));
    previous->setStatusTip(tr("Draws the previous sample with the same centre"));
    previous->setToolTip(tr("Previous sample (%1)").arg(previous->shortcut().toString(QKeySequence::NativeText)));
    next->setObjectName(QStringLiteral("nextSample"));
    next->setIcon(QIcon(QStringLiteral(":/icons/go-next.svg")));
    next->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageDown));
    next->setStatusTip(tr("Draws the next sample with the same centre"));
    next->setToolTip(tr("Next sample (%1)").arg(next->shortcut().toString(QKeySequence::NativeText)));
    // The shortcuts work wherever the focus is in the window, the Navigation panel included.
    window->addAction(previous);
    window->addAction(next);

    connect(previous, &QAction::triggered, this, &SampleChooser::slotPrevious);
    connect(next, &QAction::triggered, this, &SampleChooser::slotNext);
    connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int index) {
        if (!quiet)
            choose(index);
    });
    updateState();
}

SampleChooser::~SampleChooser() = default;

void SampleChooser::addTo(QToolBar* toolBar)
{
    bar = toolBar;
    bar->addAction(previous);
    comboAction = bar->addWidget(combo);
    bar->addAction(next);
    updateState();
}

void SampleChooser::setSamples(const QStringList& sampleNames, const QList<qint64>& sampleTotals)
{
    names = sampleNames;
    totals = sampleTotals;
    current = 0;
    quiet = true;
    combo->clear();
    const QLocale locale;
    for (int i = 0; i < names.size(); ++i) {
        combo->addItem(names.at(i));
        if (i < totals.size())
            combo->setItemData(i, tr("%1: total %2").arg(names.at(i), locale.toString(totals.at(i))), Qt::ToolTipRole);
    }
    combo->setCurrentIndex(names.isEmpty() ? -1 : 0);
    quiet = false;
    updateState();
}

void SampleChooser::setCurrent(int sample)
{
    if (sample < 0 || sample >= names.size() || sample == current)
        return;
    current = sample;
    quiet = true;
    combo->setCurrentIndex(sample);
    quiet = false;
    updateState();
}

void SampleChooser::slotPrevious()
{
    if (current > 0)
        choose(current - 1);
}

void SampleChooser::slotNext()
{
    if (current + 1 < names.size())
        choose(current + 1);
}

void SampleChooser::choose(int sample)
{
    if (sample < 0 || sample >= names.size() || sample == current)
        return;
    setCurrent(sample);
    emit signalSampleChosen(sample);
}

void SampleChooser::updateState()
{
    const bool shown = isShown();
    previous->setEnabled(shown && current > 0);
    next->setEnabled(shown && current + 1 < names.size());
    combo->setEnabled(shown);
    previous->setVisible(shown);
    next->setVisible(shown);
    if (comboAction)
        comboAction->setVisible(shown);
    if (bar)
        bar->setVisible(shown);
}

} // namespace Viewer
} // namespace Sorvik
