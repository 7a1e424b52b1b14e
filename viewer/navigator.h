#pragma once

#include "ontology/reader.h"

#include <QList>
#include <QVector>

namespace Sorvik {
namespace Viewer {

class PieChartItem;

// Where the viewer stands in the chart's tree: a stack of reader positions from the root down
// to the taxon at the chart's centre. Stepping out pops; stepping into a slice pushes the slices
// between the centre and it, so stepping out later goes through its real parents.
class Navigator
{
public:
    using Position = Zem::Ontology::Reader::Position;

    Navigator();

    void goToRoot();
    void goToUpperLevel(int levels);
    void goToLevel(PieChartItem* item);
    // parentPositions: the entered node's ancestors, nearest first, as far up as known.
    void goToLevel(const Position& position, const QList<Position>& parentPositions);

    Position getCurrentPosition() const;
    bool isAtRoot() const;
    int getDepth() const { return stack.size() - 1; }

private:
    QVector<Position> stack;
};

} // namespace Viewer
} // namespace Sorvik
