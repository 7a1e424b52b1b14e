#include "viewer/piechartitem.h"

#include "nu/graphics/color.h"
#include "nu/graphics/geometry.h"
#include "nu/graphics/svgwriter.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

#include <cmath>
#include <optional>

namespace Sorvik {
namespace Viewer {

namespace {

bool sameSlice(const LabelLayout::Slice& a, const LabelLayout::Slice& b)
{
    return a.innerRadius == b.innerRadius && a.width == b.width && a.span == b.span && a.reach == b.reach
           && a.upper == b.upper && a.right == b.right;
}

const QString chainSeparator = QStringLiteral(" \u203a ");

// The height of a font's text in scene units; all slices of a chart share one font.
double textHeight(const QFont& font)
{
    static QFont last;
    static double height = -1;
    if (height < 0 || font != last) {
        const QFontMetricsF metrics(font);
        last = font;
        height = metrics.ascent() + metrics.descent();
    }
    return height;
}

} // namespace

double PieChartItem::contrast(const QColor& a, const QColor& b)
{
    return nu::graphics::Color::contrast(a, b);
}

QColor PieChartItem::getLabelColor(const QColor& fill)
{
    return nu::graphics::Color::readableOn(fill);
}

PieChartItem::PieChartItem(int count, QGraphicsItem* parent)
    : QGraphicsItem(parent)
    , PieChartTextItem(parent)
{
    setCount(count);
    setFlag(QGraphicsItem::ItemIsSelectable);
    setRadius(0);
    setRadiusOffset(30.0);
    setPen(QPen(Qt::NoPen));
    setBrush(QBrush(color, Qt::SolidPattern));
}

void PieChartItem::addChild(PieChartItem* child)
{
    if (!child || child == this || child->isAncestorOf(this))
        return;
    // Own counts are ints and totals of a subtree never exceed its node's count, so the
    // difference fits an int unless the file's counts contradict each other; then it is 0.
    const qint64 own = getCount() - child->getTotal();
    setCount(own > 0 ? static_cast<int>(own) : 0);
    PieChartTextItem::addChild(child);
}

QList<PieChartItem::Position> PieChartItem::getChainPositions() const
{
    return chainPositions.isEmpty() ? QList<Position>{position} : chainPositions;
}

void PieChartItem::setChain(const QList<Position>& positions, const QStringList& names)
{
    chainPositions = positions;
    chainNames = names;
}

QStringList PieChartItem::getChainNames() const
{
    return chainNames.isEmpty() ? QStringList{getText().text} : chainNames;
}

QString PieChartItem::getChainText() const
{
    return chainNames.isEmpty() ? getText().text : chainNames.join(chainSeparator);
}

void PieChartItem::setColor(const QColor& c)
{
    if (c == color)
        return;
    color = c;
    setBrush(QBrush(color, Qt::SolidPattern));
    // Kept in the label too, so that a copy through the base class reads as this one does.
    nu::graphics::DrawableText text = getText();
    text.brush = QBrush(getLabelColor(color), Qt::SolidPattern);
    setText(text);
}

QList<PieChartItem::Position> PieChartItem::getParentPositions() const
{
    QList<Position> positions;
    for (auto* parent = dynamic_cast<const PieChartItem*>(parentItem()); parent;
         parent = dynamic_cast<const PieChartItem*>(parent->parentItem()))
        positions.append(parent->position);
    return positions;
}

void PieChartItem::setOthers(int number)
{
    othersNumber = std::max(0, number);
    // Not a taxon: nothing to select or step into.
    setFlag(QGraphicsItem::ItemIsSelectable, othersNumber == 0);
}

void PieChartItem::setLabelReach(double radius)
{
    if (radius == labelReach)
        return;
    prepareGeometryChange();
    labelReach = radius;
}

bool PieChartItem::isCentreDisc() const
{
    return getRadius() <= 0 && getAngle() >= 360;
}

QString PieChartItem::getDefaultText() const
{
    const QString share = QString::number(getPercentage(), 'f', 2);
    if (isOthers()) {
        return QStringLiteral("%1: %2 [%3%]").arg(getText().text, QString::number(accumCount), share);
    }
    return QStringLiteral("%1 [%2%]").arg(getChainText(), share);
}

LabelLayout::Slice PieChartItem::getLabelSlice() const
{
    LabelLayout::Slice slice;
    slice.innerRadius = getRadius();
    slice.width = getRadiusOffset();
    slice.span = getAngle();
    slice.reach = std::max(labelReach, getRadiusFull());
    // Which way the middle of the slice points on screen decides which way its text runs.
    const double middle = getAngleRad() / 2;
    const QPointF direction = mapToScene(QPointF(std::cos(middle), -std::sin(middle))) - mapToScene(QPointF());
    slice.upper = direction.y() < 1e-9;
    slice.right = direction.x() >= 0;
    return slice;
}

LabelLayout::Label PieChartItem::getLabel(double minimumScale) const
{
    if (!getTextShow())
        return LabelLayout::Label();
    // Most slices of a large chart are far too small for any label: decided without laying out
    // any text.
    const double smallest = textHeight(getText().font) * minimumScale;
    const double across = isCentreDisc() ? getRadiusFull() : getRadiusOffset();
    const double along = std::max(getRadiusFull(), labelReach) * getAngleRad();
    if (across < smallest || along < smallest)
        return LabelLayout::Label();
    const LabelLayout::Slice slice = getLabelSlice();
    const QString text = getText().text;
    // A label that fits at its font's size is the same at any zoom.
    const bool sameZoom = labelMinimum > 0
                          && (std::abs(minimumScale - labelMinimum) <= 0.02 * labelMinimum
                              || (label.kind != LabelLayout::Kind::None && label.scale >= 1.0 && minimumScale <= 1.0));
    if (sameZoom && text == labelText && sameSlice(slice, labelSlice))
        return label;
    const LabelLayout layout(getText().font, minimumScale);
    label = isCentreDisc() ? layout.placeCentre(getRadiusFull(), text) : layout.place(slice, text);
    labelSlice = slice;
    labelText = text;
    labelMinimum = minimumScale;
    return label;
}

QRectF PieChartItem::getChartRect() const
{
    QRectF area;
    std::vector<const PieChartItem*> pending{this};
    while (!pending.empty()) {
        const PieChartItem* item = pending.back();
        pending.pop_back();
        const QPointF origin = item->mapToScene(QPointF());
        const QPointF axis = item->mapToScene(QPointF(1, 0)) - origin;
        const double start = std::atan2(-axis.y(), axis.x()) * 180 / M_PI;
        const double outer = std::max(item->getRadiusFull(), item->labelReach);
        if (item->getAngle() > 0)
            area |= LabelLayout::sectorBounds(item->getRadius(), outer, start, item->getAngle()).translated(origin);
        for (QGraphicsItem* child : item->childItems()) {
            if (const auto* slice = dynamic_cast<const PieChartItem*>(child))
                pending.push_back(slice);
        }
    }
    return area;
}

QRectF PieChartItem::getDrawnRect(double pixelsPerUnit) const
{
    QRectF area;
    std::vector<const PieChartItem*> pending{this};
    while (!pending.empty()) {
        const PieChartItem* item = pending.back();
        pending.pop_back();
        const QPointF origin = item->mapToScene(QPointF());
        const QPointF axis = item->mapToScene(QPointF(1, 0)) - origin;
        const double start = std::atan2(-axis.y(), axis.x()) * 180 / M_PI;
        if (item->getAngle() > 0) {
            area |= LabelLayout::sectorBounds(item->getRadius(), item->getRadiusFull(), start, item->getAngle())
                        .translated(origin);
            const LabelLayout::Label placed = item->getLabel(item->getMinimumLabelScale(pixelsPerUnit));
            if (placed.kind != LabelLayout::Kind::None)
                area |= item->mapToScene(placed.path).boundingRect();
        }
        for (QGraphicsItem* child : item->childItems()) {
            if (const auto* slice = dynamic_cast<const PieChartItem*>(child))
                pending.push_back(slice);
        }
    }
    return area;
}

double PieChartItem::getMinimumLabelScale(double pixelsPerUnit) const
{
    const QFont& font = getText().font;
    const double points = font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() * 0.75;
    if (pixelsPerUnit <= 0 || points <= 0)
        return 1.0;
    return minimumLabelPoints / (points * pixelsPerUnit);
}

void PieChartItem::setLabelPixelsPerUnit(double pixelsPerUnit)
{
    std::vector<PieChartItem*> pending{this};
    while (!pending.empty()) {
        PieChartItem* item = pending.back();
        pending.pop_back();
        item->fixedPixelsPerUnit = std::max(0.0, pixelsPerUnit);
        for (QGraphicsItem* child : item->childItems()) {
            if (auto* slice = dynamic_cast<PieChartItem*>(child))
                pending.push_back(slice);
        }
    }
}

QRectF PieChartItem::boundingRect() const
{
    const QRectF own = PieChartTextItem::boundingRect();
    if (labelReach <= getRadiusFull())
        return own;
    return own | LabelLayout::sectorBounds(getRadius(), labelReach, 0, getAngle());
}

QString PieChartItem::getSummary() const
{
    return QStringLiteral("%1: %2 (%3 %)")
        .arg(isOthers() ? getText().text : getChainText(), QString::number(accumCount),
             QString::number(getPercentage(), 'f', 2));
}

void PieChartItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    // An SVG gives each slice its name, count and share as a tool tip.
    std::optional<nu::graphics::SvgWriter::Group> group;
    if (nu::graphics::SvgWriter::isWriting(*painter))
        group.emplace(*painter, getSummary());
    const bool selected = isSelected();
    // A cosmetic outline: one pixel at any zoom. White keeps slices of one colour apart, and
    // leaves a slice too thin to see as nothing rather than a dark hairline.
    QPen outline(selected ? QColor(Qt::red) : QColor(Qt::white));
    outline.setWidth(0);
    const QBrush fill(selected ? QColor(Qt::yellow) : color, Qt::SolidPattern);
    const double outer = getRadiusFull();
    if (getAngle() >= 360 && getRadius() > 0) {
        // A full ring: its outline is its two circles, without the join at 0°.
        paintPath(painter, option, QPen(Qt::NoPen), fill);
        painter->setPen(outline);
        painter->setBrush(Qt::NoBrush);
        painter->drawEllipse(QPointF(), outer, outer);
        painter->drawEllipse(QPointF(), getRadius(), getRadius());
    } else {
        paintPath(painter, option, outline, fill);
    }

    const double lod = fixedPixelsPerUnit > 0
                           ? fixedPixelsPerUnit
                           : QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    const LabelLayout::Label placed = getLabel(getMinimumLabelScale(lod));
    if (placed.kind == LabelLayout::Kind::None)
        return;
    // A label beyond the ring stands on the white background.
    const QColor ground = placed.outside ? QColor(Qt::white) : color;
    placed.placed.draw(*painter, QPen(Qt::NoPen), QBrush(selected ? QColor(Qt::red) : getLabelColor(ground)));
}

} // namespace Viewer
} // namespace Sorvik
