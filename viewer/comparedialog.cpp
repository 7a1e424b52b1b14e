#include "viewer/comparedialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Sorvik {
namespace Viewer {

CompareDialog::CompareDialog(const QStringList& names, const QList<qint64>& totals, QWidget* parent)
    : QDialog(parent)
    , filter(new QLineEdit(this))
    , list(new QListWidget(this))
    , notice(new QLabel(this))
    , buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Compare samples"));
    auto* intro = new QLabel(tr("Choose the samples to draw side by side, %1 to %2:").arg(minimumChosen).arg(maximumChosen),
                             this);
    intro->setWordWrap(true);
    filter->setObjectName(QStringLiteral("sampleFilter"));
    filter->setPlaceholderText(tr("Find a sample"));
    filter->setClearButtonEnabled(true);
    list->setObjectName(QStringLiteral("sampleList"));
    list->setUniformItemSizes(true);
    notice->setObjectName(QStringLiteral("chosenNotice"));
    buttons->button(QDialogButtonBox::Ok)->setText(tr("Compare"));

    const QLocale locale;
    for (int i = 0; i < names.size(); ++i) {
        const QString total = i < totals.size() ? locale.toString(totals.at(i)) : QString();
        auto* item = new QListWidgetItem(total.isEmpty() ? names.at(i) : tr("%1 (total %2)").arg(names.at(i), total), list);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Unchecked);
        item->setData(Qt::UserRole, names.at(i));
    }

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addWidget(filter);
    layout->addWidget(list, 1);
    layout->addWidget(notice);
    layout->addWidget(buttons);
    resize(420, 480);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(list, &QListWidget::itemChanged, this, &CompareDialog::updateState);
    connect(filter, &QLineEdit::textChanged, this, &CompareDialog::slotFilterChanged);
    updateState();
}

CompareDialog::~CompareDialog() = default;

void CompareDialog::setChosen(const QList<int>& samples)
{
    const QSignalBlocker blocker(list);
    for (int i = 0; i < list->count(); ++i)
        list->item(i)->setCheckState(samples.contains(i) ? Qt::Checked : Qt::Unchecked);
    updateState();
}

QList<int> CompareDialog::getChosen() const
{
    QList<int> chosen;
    for (int i = 0; i < list->count(); ++i) {
        if (list->item(i)->checkState() == Qt::Checked)
            chosen.append(i);
    }
    return chosen;
}

bool CompareDialog::isAcceptable() const
{
    const int chosen = getChosen().size();
    return chosen >= minimumChosen && chosen <= maximumChosen;
}

QList<int> CompareDialog::defaultChoice(int current, int count)
{
    QList<int> chosen;
    const int wanted = std::min(count, maximumChosen);
    // From the current sample on; near the end, the ones before it fill the grid.
    const int first = std::max(0, std::min(current, count - wanted));
    for (int i = first; i < first + wanted; ++i)
        chosen.append(i);
    return chosen;
}

void CompareDialog::updateState()
{
    const int chosen = getChosen().size();
    buttons->button(QDialogButtonBox::Ok)->setEnabled(isAcceptable());
    if (chosen < minimumChosen)
        notice->setText(tr("%1 chosen: choose at least %2.").arg(chosen).arg(minimumChosen));
    else if (chosen > maximumChosen)
        notice->setText(tr("%1 chosen: choose at most %2.").arg(chosen).arg(maximumChosen));
    else
        notice->setText(tr("%1 chosen.").arg(chosen));
}

void CompareDialog::slotFilterChanged(const QString& text)
{
    // Ticked samples stay ticked while hidden.
    for (int i = 0; i < list->count(); ++i) {
        QListWidgetItem* item = list->item(i);
        item->setHidden(!item->data(Qt::UserRole).toString().contains(text, Qt::CaseInsensitive));
    }
}

} // namespace Viewer
} // namespace Sorvik
