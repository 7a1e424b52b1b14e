#pragma once

#include "nu/graphics/baseitem.h"

#include <QBrush>
#include <QPainterPath>
#include <QPen>

namespace nu {
namespace graphics {

// An item drawn as the outline of its path() with a pen; bounds and hit shape follow the path.
class CustomTraceItem : public virtual BaseItem
{
public:
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    virtual QPainterPath path() const = 0;

    const QPen& getPen() const { return pen; }
    void setPen(const QPen& pen);

protected:
    // Draws path() with the given pen and brush, clipped to the exposed area; lets an item
    // paint with other attributes than the stored ones (a selection) without changing them.
    void paintPath(QPainter* painter, const QStyleOptionGraphicsItem* option, const QPen& pen,
                   const QBrush& brush);

private:
    QPen pen;
};

} // namespace graphics
} // namespace nu
