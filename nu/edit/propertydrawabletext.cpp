#include "nu/edit/propertydrawabletext.h"

namespace nu {
namespace edit {

PropertyDrawableText::PropertyDrawableText(const PropertyInfo& info)
    : PropertySet(info)
{
    beginProperties()
        .prop<Text>(PropertyInfo(info.name + QStringLiteral(".text"), QStringLiteral("text"), tr("text")), *this)
        .prop<Font>(PropertyInfo(info.name + QStringLiteral(".font"), QStringLiteral("font"), tr("font")), *this)
        .prop<Pen>(PropertyInfo(info.name + QStringLiteral(".pen"), QStringLiteral("border"), tr("border")), *this)
        .prop<Brush>(PropertyInfo(info.name + QStringLiteral(".brush"), QStringLiteral("fill"), tr("fill")), *this)
        .endProperties();
}

PropertyDrawableText::Text::Text(const PropertyInfo& info, PropertyDrawableText& text)
    : PropertyString(info)
    , text(text)
{
}

QString PropertyDrawableText::Text::getValue() const
{
    return text.getValue().text;
}

void PropertyDrawableText::Text::setValue(const QString& value)
{
    graphics::DrawableText t = text.getValue();
    t.text = value;
    text.setValue(t);
}

PropertyDrawableText::Font::Font(const PropertyInfo& info, PropertyDrawableText& text)
    : PropertyFont(info)
    , text(text)
{
}

QFont PropertyDrawableText::Font::getValue() const
{
    return text.getValue().font;
}

void PropertyDrawableText::Font::setValue(const QFont& value)
{
    graphics::DrawableText t = text.getValue();
    t.font = value;
    text.setValue(t);
}

PropertyDrawableText::Pen::Pen(const PropertyInfo& info, PropertyDrawableText& text)
    : PropertyPen(info)
    , text(text)
{
}

QPen PropertyDrawableText::Pen::getValue() const
{
    return text.getValue().pen;
}

void PropertyDrawableText::Pen::setValue(const QPen& value)
{
    graphics::DrawableText t = text.getValue();
    t.pen = value;
    text.setValue(t);
}

PropertyDrawableText::Brush::Brush(const PropertyInfo& info, PropertyDrawableText& text)
    : PropertyBrush(info)
    , text(text)
{
}

QBrush PropertyDrawableText::Brush::getValue() const
{
    return text.getValue().brush;
}

void PropertyDrawableText::Brush::setValue(const QBrush& value)
{
    graphics::DrawableText t = text.getValue();
    t.brush = value;
    text.setValue(t);
}

} // namespace edit
} // namespace nu
