#pragma once

#include "nu/edit/propertycolor.h"
#include "nu/edit/propertyinteger.h"
#include "nu/edit/propertyoption.h"
#include "nu/edit/propertyset.h"

#include <QPen>

namespace nu {
namespace edit {

// A pen, edited and saved as "<name>.color", "<name>.width" and "<name>.style". Only the plain
// line styles are offered; any other style (a custom dash pattern) reads as "No Line".
class PropertyPen : public PropertySet
{
public:
    explicit PropertyPen(const PropertyInfo& info);

    virtual QPen getValue() const = 0;
    virtual void setValue(const QPen& value) = 0;

    class Color : public PropertyColor
    {
    public:
        Color(const PropertyInfo& info, PropertyPen& pen);
        QColor getValue() const override;
        void setValue(const QColor& value) override;

    private:
        PropertyPen& pen;
    };

    // The editor does not go below 0; the value itself is written as given.
    class Width : public PropertyInteger
    {
    public:
        Width(const PropertyInfo& info, PropertyPen& pen);
        int getValue() const override;
        void setValue(int value) override;
        int min() const override;

    private:
        PropertyPen& pen;
    };

    // Ids are those of Qt::PenStyle from Qt::NoPen to Qt::DashDotDotLine; any other id writes
    // Qt::NoPen.
    class Style : public PropertyOption
    {
    public:
        Style(const PropertyInfo& info, PropertyPen& pen);
        int getValue() const override;
        void setValue(int value) override;

    private:
        PropertyPen& pen;
    };
};

} // namespace edit
} // namespace nu
