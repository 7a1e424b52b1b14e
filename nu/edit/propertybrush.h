#pragma once

#include "nu/edit/propertycolor.h"
#include "nu/edit/propertyoption.h"
#include "nu/edit/propertyset.h"

#include <QBrush>

namespace nu {
namespace edit {

// A brush, edited and saved as "<name>.color" and "<name>.style". Only the plain patterns are
// offered; a gradient or texture reads as "No Pattern".
class PropertyBrush : public PropertySet
{
public:
    explicit PropertyBrush(const PropertyInfo& info);

    virtual QBrush getValue() const = 0;
    virtual void setValue(const QBrush& value) = 0;

    class Color : public PropertyColor
    {
    public:
        Color(const PropertyInfo& info, PropertyBrush& brush);
        QColor getValue() const override;
        void setValue(const QColor& value) override;

    private:
        PropertyBrush& brush;
    };

    // Ids are those of Qt::BrushStyle from Qt::NoBrush to Qt::DiagCrossPattern; any other id
    // writes Qt::NoBrush.
    class Style : public PropertyOption
    {
    public:
        Style(const PropertyInfo& info, PropertyBrush& brush);
        int getValue() const override;
        void setValue(int value) override;

    private:
        PropertyBrush& brush;
    };
};

} // namespace edit
} // namespace nu
