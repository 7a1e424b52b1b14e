#pragma once

#include "nu/graphics/positionchilditem.h"
#include "nu/graphics/rotationchilditem.h"

#include <QPainterPath>

namespace nu {
namespace graphics {

// A small marker of a local frame (an x axis, an upward y axis and a square between them) that
// follows its parent's rotation and position. Hidden, it has no outline: neither drawn nor hit.
class SubSpaceItem : public RotationChildItem, public PositionChildItem
{
public:
    explicit SubSpaceItem(QGraphicsItem* parent = nullptr);

    bool getSubSpaceVisible() const { return subSpaceVisible; }
    void setSubSpaceVisible(bool visible);

    QPointF getPositionOffsetFromParent() const override;
    void setPositionOffsetFromParent(const QPointF& offset) override;
    void updatePositionFromParent(const QPointF& oldPosition, const QPointF& newPosition) override;

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;
    QPainterPath path() const;

private:
    bool subSpaceVisible = true;
};

} // namespace graphics
} // namespace nu
