#pragma once

#include "nu/graphics/anchoritem.h"
#include "nu/graphics/customshapeitem.h"
#include "nu/graphics/placedtext.h"
#include "nu/graphics/positionchilditem.h"
#include "nu/graphics/rotationchilditem.h"

#include <QFont>

namespace nu {
namespace graphics {

// A straight text whose anchor point (of its box) lies on the item's origin.
class RectTextItem : public CustomShapeItem, public RotationChildItem, public PositionChildItem, public AnchorItem
{
public:
    explicit RectTextItem(QGraphicsItem* parent = nullptr);

    QString getText() const { return text; }
    void setText(const QString& text);
    QFont getFont() const { return font; }
    void setFont(const QFont& font);

    QPointF getPositionOffsetFromParent() const override;
    void setPositionOffsetFromParent(const QPointF& offset) override;
    void updatePositionFromParent(const QPointF& oldPosition, const QPointF& newPosition) override;

    QPainterPath path() const override;
    // The text as placed, which vector images keep as text.
    PlacedText getPlacedText() const;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    QString text;
    QFont font;
};

} // namespace graphics
} // namespace nu
