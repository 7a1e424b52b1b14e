#pragma once

#include "nu/graphics/customshapeitem.h"
#include "nu/graphics/placedtext.h"
#include "nu/graphics/radiuschilditem.h"
#include "nu/graphics/radiusitem.h"
#include "nu/graphics/radiusparentitem.h"
#include "nu/graphics/rotationchilditem.h"

#include <QFont>

namespace nu {
namespace graphics {

// A text bent along the circle of its radius, centred on the item's +x axis; its rotation turns
// it to its place (the middle of a bracket or slice when it hangs on one). Inside runs clockwise
// with the glyphs' tops outwards, Outside counter-clockwise with the tops to the centre.
class ArcTextItem : public CustomShapeItem,
                    public RadiusItem,
                    public RadiusParentItem,
                    public RadiusChildItem,
                    public RotationChildItem
{
public:
    enum class Orientation { Inside = 0, Outside = 1 };

    explicit ArcTextItem(QGraphicsItem* parent = nullptr);

    QString getText() const { return text; }
    void setText(const QString& text);
    QFont getFont() const { return font; }
    void setFont(const QFont& font);
    Orientation getOrientation() const { return orientation; }
    void setOrientation(Orientation orientation);
    double getRadius() const override { return radius; }
    // Negative radii become 0.
    void setRadius(double radius) override;

    double getRadiusForChild() const override { return radius; }
    double getRadiusOffsetFromParent() const override;
    // Negative offsets become 0.
    void setRadiusOffsetFromParent(double offset) override;
    void updateRadiusFromParent(double oldRadius, double newRadius) override;

    QPainterPath path() const override;
    // The text as placed, which vector images keep as text.
    PlacedText getPlacedText() const;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    QString text;
    QFont font;
    Orientation orientation = Orientation::Inside;
    double radius = 0;
};

} // namespace graphics
} // namespace nu
