#include "viewer/comparegrid.h"

#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/view.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QResizeEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace Sorvik {
namespace Viewer {

namespace {
// Smaller charts cannot be read; the grid scrolls in its window instead.
constexpr int smallestChart = 140;
} // namespace

CompareGrid::CompareGrid(QWidget* parent)
    : QWidget(parent)
    , grid(new QGridLayout(this))
{
    grid->setContentsMargins(4, 4, 4, 4);
    grid->setSpacing(6);
}

CompareGrid::~CompareGrid()
{
    // The views go before the charts' owners are asked about them.
    for (Part& part : parts)
        part.view->setPieChart(nullptr);
}

View* CompareGrid::getView(int cell) const
{
    return cell >= 0 && cell < getCount() ? parts[static_cast<size_t>(cell)].view : nullptr;
}

QLabel* CompareGrid::getTitle(int cell) const
{
    return cell >= 0 && cell < getCount() ? parts[static_cast<size_t>(cell)].title : nullptr;
}

QLabel* CompareGrid::getNote(int cell) const
{
    return cell >= 0 && cell < getCount() ? parts[static_cast<size_t>(cell)].note : nullptr;
}

int CompareGrid::columnsFor(int count, const QSize& area, int titleHeight)
{
    if (count < 1)
        return 0;
    int best = 1;
    double bestSide = -1;
    for (int cols = 1; cols <= count; ++cols) {
        const int rows = (count + cols - 1) / cols;
        const double side = std::min(static_cast<double>(area.width()) / cols,
                                     static_cast<double>(area.height()) / rows - titleHeight);
        // Ties go to fewer columns: rows read more easily than one long line.
        if (side > bestSide + 1e-9) {
            bestSide = side;
            best = cols;
        }
    }
    return best;
}

void CompareGrid::setCells(std::vector<Cell> cells)
{
    if (static_cast<int>(cells.size()) != getCount())
        makeParts(static_cast<int>(cells.size()));
    for (size_t i = 0; i < cells.size(); ++i) {
        Part& part = parts[i];
        part.title->setText(cells[i].title);
        part.title->setToolTip(cells[i].title);
        part.note->setText(cells[i].note);
        part.note->setVisible(!cells[i].chart && !cells[i].note.isEmpty());
        part.view->setPieChart(std::move(cells[i].chart));
    }
    // A selection made before stays where the taxon is still drawn.
    slotSelectItem(selectedId);
}

void CompareGrid::makeParts(int count)
{
    for (Part& part : parts) {
        part.view->setPieChart(nullptr);
        grid->removeWidget(part.frame);
        delete part.frame;
    }
    parts.clear();
    for (int i = 0; i < count; ++i) {
        Part part;
        part.frame = new QFrame(this);
        part.frame->setObjectName(QStringLiteral("compareCell%1").arg(i));
        auto* layout = new QVBoxLayout(part.frame);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(2);
        part.title = new QLabel(part.frame);
        part.title->setAlignment(Qt::AlignHCenter);
        part.title->setTextFormat(Qt::PlainText);
        // A long title is cut rather than widening every column of the grid; its tool tip has it
        // whole.
        part.title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        part.note = new QLabel(part.frame);
        part.note->setAlignment(Qt::AlignHCenter);
        part.note->setWordWrap(true);
        part.note->setEnabled(false);
        part.note->hide();
        part.view = new View(part.frame);
        part.view->setMinimumSize(smallestChart, smallestChart);
        layout->addWidget(part.title);
        layout->addWidget(part.note);
        layout->addWidget(part.view, 1);

        Scene* scene = part.view->getScene();
        connect(scene, &Scene::signalSelectedItem, this, &CompareGrid::selectedInCell);
        connect(scene, &Scene::signalItemEntered, this, [this, i] { emit signalItemEntered(i); });
        connect(scene, &Scene::signalSliceHovered, this, [this, i](const QString& id) { emit signalSliceHovered(i, id); });
        parts.push_back(part);
    }
    columns = 0;
    arrange();
}

void CompareGrid::arrange()
{
    const int titleHeight = parts.empty() ? 0 : parts.front().title->sizeHint().height();
    // Not shown yet, the widget has no size to go by: a square grid until it has.
    const int wanted = isVisible() ? columnsFor(getCount(), contentsRect().size(), titleHeight)
                                   : static_cast<int>(std::ceil(std::sqrt(static_cast<double>(getCount()))));
    if (wanted == columns)
        return;
    columns = wanted;
    for (Part& part : parts)
        grid->removeWidget(part.frame);
    for (int column = 0; column < grid->columnCount(); ++column)
        grid->setColumnStretch(column, 0);
    for (int row = 0; row < grid->rowCount(); ++row)
        grid->setRowStretch(row, 0);
    for (int i = 0; i < getCount(); ++i)
        grid->addWidget(parts[static_cast<size_t>(i)].frame, i / columns, i % columns);
    // Every cell the same size, a last row that is not full included.
    for (int column = 0; column < columns; ++column)
        grid->setColumnStretch(column, 1);
    for (int row = 0; row < (getCount() + columns - 1) / columns; ++row)
        grid->setRowStretch(row, 1);
}

void CompareGrid::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void CompareGrid::slotSelectItem(const QString& id)
{
    selectedId = id;
    for (Part& part : parts)
        part.view->getScene()->slotSelectItem(id);
}

void CompareGrid::selectedInCell(const QString& id)
{
    if (id == selectedId)
        return;
    slotSelectItem(id);
    emit signalSelectedItem(id);
}

} // namespace Viewer
} // namespace Sorvik
