#include "nu/multiprogresswidget.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include <cmath>
#include <limits>

namespace nu {

namespace {
constexpr int barRange = 10000;
}

MultiProgressWidget::Block::Block(QWidget* parent)
    : QWidget(parent)
{
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    label = new QLabel(this);
    bar = new QProgressBar(this);
    bar->setRange(0, barRange);
    bar->setValue(0);
    box->addWidget(label);
    box->addWidget(bar);
}

QString MultiProgressWidget::Block::getMessage() const
{
    return label->text();
}

int MultiProgressWidget::Block::getBarValue() const
{
    return bar->value();
}

void MultiProgressWidget::Block::setBar(double barValue)
{
    // A maximum of 0 gives an infinite or undefined value: the bar keeps what it showed.
    if (!std::isfinite(barValue) || barValue < std::numeric_limits<int>::min()
        || barValue > std::numeric_limits<int>::max())
        return;
    bar->setValue(static_cast<int>(barValue));
}

void MultiProgressWidget::Block::setProgress(int v, int m, const QString& message)
{
    value = v;
    maximum = m;
    setBar(value * static_cast<double>(barRange) / maximum);
    label->setText(message);
}

void MultiProgressWidget::Block::setSubProgress(int subValue, int subMaximum)
{
    const double s = static_cast<double>(barRange) / maximum;
    setBar(value * s + subValue * s / subMaximum);
}

MultiProgressWidget::MultiProgressWidget(QWidget* parent)
    : QWidget(parent)
{
    layout = new QVBoxLayout(this);
    createToLevel(0);
}

const MultiProgressWidget::Block* MultiProgressWidget::getBlock(int level) const
{
    return level >= 0 && level < blocks.size() ? blocks.at(level) : nullptr;
}

void MultiProgressWidget::createToLevel(int level)
{
    while (blocks.size() <= level) {
        auto* block = new Block(this);
        layout->addWidget(block);
        blocks.append(block);
    }
}

void MultiProgressWidget::deleteToLevel(int level)
{
    while (blocks.size() > level + 1)
        delete blocks.takeLast();
}

void MultiProgressWidget::slotProgressChanged(int level, int value, int maximum, QString message)
{
    if (level < 0)
        return;
    const int top = blocks.size() - 1;
    if (level > top)
        createToLevel(level);
    else if (level < top)
        deleteToLevel(level);

    blocks[level]->setProgress(value, maximum, message);
    for (int i = level - 1; i >= 0; --i)
        blocks[i]->setSubProgress(blocks[i + 1]->getValue(), blocks[i + 1]->getMax());
}

} // namespace nu
