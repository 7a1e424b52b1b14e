#include "nu/edit/propertypen.h"

namespace nu {
namespace edit {

namespace {

bool isOfferedStyle(int style)
{
    return style >= Qt::NoPen && style <= Qt::DashDotDotLine;
}

} // namespace

PropertyPen::PropertyPen(const PropertyInfo& info)
    : PropertySet(info)
{
    beginProperties()
        .prop<Color>(PropertyInfo(info.name + QStringLiteral(".color"), QStringLiteral("color"), tr("color")), *this)
        .prop<Width>(PropertyInfo(info.name + QStringLiteral(".width"), QStringLiteral("width"), tr("width")), *this)
        .prop<Style>(PropertyInfo(info.name + QStringLiteral(".style"), QStringLiteral("style"), tr("style")), *this)
        .endProperties();
}

PropertyPen::Color::Color(const PropertyInfo& info, PropertyPen& pen)
    : PropertyColor(info)
    , pen(pen)
{
}

QColor PropertyPen::Color::getValue() const
{
    return pen.getValue().color();
}

void PropertyPen::Color::setValue(const QColor& value)
{
    QPen p = pen.getValue();
    p.setColor(value);
    pen.setValue(p);
}

PropertyPen::Width::Width(const PropertyInfo& info, PropertyPen& pen)
    : PropertyInteger(info)
    , pen(pen)
{
}

int PropertyPen::Width::getValue() const
{
    return pen.getValue().width();
}

void PropertyPen::Width::setValue(int value)
{
    QPen p = pen.getValue();
    p.setWidth(value);
    pen.setValue(p);
}

int PropertyPen::Width::min() const
{
    return 0;
}

PropertyPen::Style::Style(const PropertyInfo& info, PropertyPen& pen)
    : PropertyOption(info)
    , pen(pen)
{
    addOption(Qt::NoPen, tr("No Line"));
    addOption(Qt::SolidLine, tr("Solid Line"));
    addOption(Qt::DashLine, tr("Dash Line"));
    addOption(Qt::DotLine, tr("Dot Line"));
    addOption(Qt::DashDotLine, tr("Dash Dot Line"));
    addOption(Qt::DashDotDotLine, tr("Dash Dot Dot Line"));
}

int PropertyPen::Style::getValue() const
{
    const int style = pen.getValue().style();
    return isOfferedStyle(style) ? style : int(Qt::NoPen);
}

void PropertyPen::Style::setValue(int value)
{
    QPen p = pen.getValue();
    p.setStyle(isOfferedStyle(value) ? Qt::PenStyle(value) : Qt::NoPen);
    pen.setValue(p);
}

} // namespace edit
} // namespace nu
