#pragma once

#include "nu/edit/propertybrush.h"
#include "nu/edit/propertyfont.h"
#include "nu/edit/propertypen.h"
#include "nu/edit/propertyset.h"
#include "nu/edit/propertystring.h"
#include "nu/graphics/drawabletext.h"

namespace nu {
namespace edit {

// A drawn text, edited and saved as "<name>.text", "<name>.font", the pen under "<name>.pen"
// (shown as "border") and the brush under "<name>.brush" (shown as "fill").
class PropertyDrawableText : public PropertySet
{
public:
    explicit PropertyDrawableText(const PropertyInfo& info);

    virtual graphics::DrawableText getValue() const = 0;
    virtual void setValue(const graphics::DrawableText& value) = 0;

    class Text : public PropertyString
    {
    public:
        Text(const PropertyInfo& info, PropertyDrawableText& text);
        QString getValue() const override;
        void setValue(const QString& value) override;

    private:
        PropertyDrawableText& text;
    };

    class Font : public PropertyFont
    {
    public:
        Font(const PropertyInfo& info, PropertyDrawableText& text);
        QFont getValue() const override;
        void setValue(const QFont& value) override;

    private:
        PropertyDrawableText& text;
    };

    class Pen : public PropertyPen
    {
    public:
        Pen(const PropertyInfo& info, PropertyDrawableText& text);
        QPen getValue() const override;
        void setValue(const QPen& value) override;

    private:
        PropertyDrawableText& text;
    };

    class Brush : public PropertyBrush
    {
    public:
        Brush(const PropertyInfo& info, PropertyDrawableText& text);
        QBrush getValue() const override;
        void setValue(const QBrush& value) override;

    private:
        PropertyDrawableText& text;
    };
};

} // namespace edit
} // namespace nu
