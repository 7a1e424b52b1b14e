#pragma once

#include "nu/graphics/customtraceitem.h"

namespace nu {
namespace graphics {

// An item drawn as its path() filled with a brush and outlined with a pen.
class CustomShapeItem : public CustomTraceItem
{
public:
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    const QBrush& getBrush() const { return brush; }
    void setBrush(const QBrush& brush);

private:
    QBrush brush{Qt::red, Qt::SolidPattern};
};

} // namespace graphics
} // namespace nu
