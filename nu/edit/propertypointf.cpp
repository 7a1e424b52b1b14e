#include "nu/edit/propertypointf.h"

namespace nu {
namespace edit {

PropertyPointF::PropertyPointF(const PropertyInfo& info)
    : PropertySet(info)
{
    beginProperties()
        .prop<PointX>(PropertyInfo(info.name + QStringLiteral(".x"), QStringLiteral("x"), tr("x coordinate")), *this)
        .prop<PointY>(PropertyInfo(info.name + QStringLiteral(".y"), QStringLiteral("y"), tr("y coordinate")), *this)
        .endProperties();
}

PropertyPointF::PointX::PointX(const PropertyInfo& info, PropertyPointF& point)
    : PropertyDouble(info)
    , point(point)
{
}

double PropertyPointF::PointX::getValue() const
{
    return point.getValue().x();
}

void PropertyPointF::PointX::setValue(double value)
{
    QPointF p = point.getValue();
    p.setX(value);
    point.setValue(p);
}

PropertyPointF::PointY::PointY(const PropertyInfo& info, PropertyPointF& point)
    : PropertyDouble(info)
    , point(point)
{
}

double PropertyPointF::PointY::getValue() const
{
    return point.getValue().y();
}

void PropertyPointF::PointY::setValue(double value)
{
    QPointF p = point.getValue();
    p.setY(value);
    point.setValue(p);
}

} // namespace edit
} // namespace nu
