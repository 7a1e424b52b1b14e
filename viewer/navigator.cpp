#include "viewer/navigator.h"

#include "viewer/piechartitem.h"

namespace Sorvik {
namespace Viewer {

Navigator::Navigator()
{
    goToRoot();
}

void Navigator::goToRoot()
{
    stack = {Position()};
}

void Navigator::goToUpperLevel(int levels)
{
    for (int i = 0; i < levels && stack.size() > 1; ++i)
        stack.removeLast();
}

void Navigator::goToLevel(PieChartItem* item)
{
    if (!item || item->getChainPositions().contains(getCurrentPosition()))
        return;
    // The slices between the centre and the entered one, nearest first. A slice drawn for a
    // chain is entered at its deepest node, and the centre may be any node of its chain.
    QList<Position> between;
    bool centreFound = false;
    for (auto* parent = dynamic_cast<const PieChartItem*>(item->parentItem()); parent;
         parent = dynamic_cast<const PieChartItem*>(parent->parentItem())) {
        if (parent->getChainPositions().contains(getCurrentPosition())) {
            centreFound = true;
            break;
        }
        between.append(parent->getPosition());
    }
    if (!centreFound)
        between.clear();
    for (int i = between.size() - 1; i >= 0; --i)
        stack.append(between.at(i));
    stack.append(item->getPosition());
}

void Navigator::goToLevel(const Position& position, const QList<Position>& parentPositions)
{
    if (position == getCurrentPosition())
        return;
    // The ancestors between the current centre and the entered node, farthest first.
    const int centre = parentPositions.indexOf(getCurrentPosition());
    const int farthest = centre < 0 ? -1 : centre - 1;
    for (int i = farthest; i >= 0; --i)
        stack.append(parentPositions.at(i));
    stack.append(position);
}

Navigator::Position Navigator::getCurrentPosition() const
{
    return stack.last();
}

bool Navigator::isAtRoot() const
{
    return stack.size() == 1;
}

} // namespace Viewer
} // namespace Sorvik
