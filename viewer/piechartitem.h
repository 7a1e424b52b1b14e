#pragma once

#include "nu/graphics/piecharttextitem.h"
#include "ontology/reader.h"

#include <QColor>
#include <QList>

namespace Sorvik {
namespace Viewer {

// A slice of the viewer's chart: a labelled slice 30 units wide that knows where its node lies
// in the ontology, for stepping into it. Its fill colour is also its shape brush, and the label
// colour that reads on it its label's brush, so that a copy through the base class keeps both;
// selection only changes how it is painted.
class PieChartItem : public nu::graphics::PieChartTextItem
{
public:
    using Position = Zem::Ontology::Reader::Position;

    explicit PieChartItem(int count, QGraphicsItem* parent = nullptr);

    using nu::graphics::PieChartTextItem::addChild;
    // Moves the child's total out of this slice's own count and attaches the child, so that this
    // slice's total stays its node's accumulated count and its own count ends as the part no
    // kept child accounts for.
    void addChild(PieChartItem* child);

    Position getPosition() const { return position; }
    // The slice's identifier in the scene and the browser: its node's row in the file, as text.
    QString getId() const { return QString::number(position.getRow()); }
    void setPosition(const Position& p) { position = p; }
    QColor getColor() const { return color; }
    void setColor(const QColor& color);
    // The positions of the ancestors that are viewer slices, nearest first.
    QList<Position> getParentPositions() const;

    // The label colour on a fill: black unless the fill is too dark for it.
    static QColor getLabelColor(const QColor& fill);

    // A slice that is a whole disc around the chart's centre: the start node of the chart.
    bool isCentreDisc() const;

    // Not selected: black outline, own colour and a label that reads on it (black, or white on
    // the darkest fills); selected: red outline, yellow, red label.
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    Position position;
    QColor color{Qt::red};
};

} // namespace Viewer
} // namespace Sorvik
