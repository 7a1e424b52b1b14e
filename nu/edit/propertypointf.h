#pragma once

#include "nu/edit/propertydouble.h"
#include "nu/edit/propertyset.h"

#include <QPointF>

namespace nu {
namespace edit {

// A point, edited and saved as its two coordinates "<name>.x" and "<name>.y".
class PropertyPointF : public PropertySet
{
public:
    explicit PropertyPointF(const PropertyInfo& info);

    virtual QPointF getValue() const = 0;
    virtual void setValue(const QPointF& value) = 0;

    class PointX : public PropertyDouble
    {
    public:
        PointX(const PropertyInfo& info, PropertyPointF& point);
        double getValue() const override;
        void setValue(double value) override;

    private:
        PropertyPointF& point;
    };

    class PointY : public PropertyDouble
    {
    public:
        PointY(const PropertyInfo& info, PropertyPointF& point);
        double getValue() const override;
        void setValue(double value) override;

    private:
        PropertyPointF& point;
    };
};

} // namespace edit
} // namespace nu
