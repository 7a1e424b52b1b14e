#include "nu/graphics/customshapeitem.h"

namespace nu {
namespace graphics {

void CustomShapeItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    paintPath(painter, option, getPen(), brush);
}

void CustomShapeItem::setBrush(const QBrush& b)
{
    if (b == brush)
        return;
    brush = b;
    update();
}

} // namespace graphics
} // namespace nu
