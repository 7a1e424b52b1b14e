#pragma once

#include "nu/graphics/piecharttextitem.h"
#include "ontology/reader.h"
#include "viewer/labellayout.h"

#include <QColor>
#include <QList>
#include <QStringList>

namespace Sorvik {
namespace Viewer {

// A slice of the viewer's chart: a labelled slice 30 units wide that knows where its node lies
// in the ontology, for stepping into it. A slice may stand for a single-child chain of nodes
// drawn as one (it knows all their names, and steps into the deepest), or gather the children
// that fell below the minimum share ("N others"). Its fill colour is also its shape brush, and
// the label colour that reads on it its label's brush, so that a copy through the base class
// keeps both; selection only changes how it is painted. Its label is placed anew for the size it
// is drawn at, never smaller than a readable size.
class PieChartItem : public nu::graphics::PieChartTextItem
{
public:
    using Position = Zem::Ontology::Reader::Position;

    // The smallest label drawn, in points on the screen or image.
    static constexpr double minimumLabelPoints = 7.0;

    explicit PieChartItem(int count, QGraphicsItem* parent = nullptr);

    using nu::graphics::PieChartTextItem::addChild;
    // Moves the child's total out of this slice's own count and attaches the child, so that this
    // slice's total stays its node's accumulated count and its own count ends as the part no
    // kept child accounts for.
    void addChild(PieChartItem* child);

    // The position of the deepest node the slice stands for: stepping in goes there.
    Position getPosition() const { return position; }
    // The slice's identifier in the scene and the browser: its node's row in the file, as text.
    QString getId() const { return QString::number(position.getRow()); }
    void setPosition(const Position& p) { position = p; }
    // The positions of the chain the slice stands for, from its top node to the deepest (only
    // the slice's own when it stands for one node).
    QList<Position> getChainPositions() const;
    // A chain of more than one node: their positions and names, from the top node down.
    void setChain(const QList<Position>& positions, const QStringList& names);
    // The names of the chain, from its top node to the deepest; the label is the last.
    QStringList getChainNames() const;
    // The chain's names joined for tool tips and the browser: "root › cellular organisms".
    QString getChainText() const;

    QColor getColor() const { return color; }
    void setColor(const QColor& color);
    // The positions of the ancestors that are viewer slices, nearest first.
    QList<Position> getParentPositions() const;

    // The count of the node's reads as stored (a slice's own counts may be scaled down to fit).
    qint64 getAccumCount() const { return accumCount; }
    void setAccumCount(qint64 count) { accumCount = count; }

    // The slice that gathers the children below the minimum share: how many it holds.
    bool isOthers() const { return othersNumber > 0; }
    int getOthersNumber() const { return othersNumber; }
    void setOthers(int number);

    // How far out (scene units) the label may reach: beyond the slice's own ring when nothing is
    // drawn outside it.
    double getLabelReach() const { return labelReach; }
    void setLabelReach(double radius);

    // The label colour on a fill: black or white, whichever contrasts more.
    static QColor getLabelColor(const QColor& fill);
    // The contrast ratio of two colours (1 to 21).
    static double contrast(const QColor& a, const QColor& b);

    // The scene area that this slice and the slices below it cover, with the room their labels
    // may take beyond them: exact, however the slices are turned.
    QRectF getChartRect() const;
    // The scene area actually painted when drawn at this many pixels per scene unit: the slices
    // and the labels as they are laid out at that size.
    QRectF getDrawnRect(double pixelsPerUnit) const;
    // The smallest label scale, relative to the label's font, at this many pixels per unit.
    double getMinimumLabelScale(double pixelsPerUnit) const;
    // Lays the labels of this slice and those below it out for this many pixels per unit
    // whatever size they are painted at (an image measured before it is drawn); 0 goes back to
    // the size painted at.
    void setLabelPixelsPerUnit(double pixelsPerUnit);

    // A slice that is a whole disc around the chart's centre: the start node of the chart.
    bool isCentreDisc() const;

    // The chain with the share of the chart's centre: "root › Bacteria [12.50%]".
    QString getDefaultText() const override;
    // The chain, the count and the share of the centre: "root › Bacteria: 1200 (12.50 %)".
    QString getSummary() const;
    // The label as laid out for labels no smaller than minimumScale of the label's font.
    LabelLayout::Label getLabel(double minimumScale) const;
    QRectF boundingRect() const override;
    // Not selected: thin white outline, own colour, a label that reads on it; selected: red
    // outline, yellow, red label. A full ring has no seam.
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    LabelLayout::Slice getLabelSlice() const;

    Position position;
    QList<Position> chainPositions;
    QStringList chainNames;
    QColor color{Qt::red};
    qint64 accumCount = 0;
    int othersNumber = 0;
    double labelReach = 0;
    double fixedPixelsPerUnit = 0;
    // The last label laid out, and what it was laid out for.
    mutable LabelLayout::Label label;
    mutable LabelLayout::Slice labelSlice;
    mutable QString labelText;
    mutable double labelMinimum = -1;
};

} // namespace Viewer
} // namespace Sorvik
