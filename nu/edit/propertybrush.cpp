#include "nu/edit/propertybrush.h"

namespace nu {
namespace edit {

namespace {

bool isOfferedStyle(int style)
{
    return style >= Qt::NoBrush && style <= Qt::DiagCrossPattern;
}

} // namespace

PropertyBrush::PropertyBrush(const PropertyInfo& info)
    : PropertySet(info)
{
    beginProperties()
        .prop<Color>(PropertyInfo(info.name + QStringLiteral(".color"), QStringLiteral("color"), tr("color")), *this)
        .prop<Style>(PropertyInfo(info.name + QStringLiteral(".style"), QStringLiteral("style"), tr("style")), *this)
        .endProperties();
}

PropertyBrush::Color::Color(const PropertyInfo& info, PropertyBrush& brush)
    : PropertyColor(info)
    , brush(brush)
{
}

QColor PropertyBrush::Color::getValue() const
{
    return brush.getValue().color();
}

void PropertyBrush::Color::setValue(const QColor& value)
{
    QBrush b = brush.getValue();
    b.setColor(value);
    brush.setValue(b);
}

PropertyBrush::Style::Style(const PropertyInfo& info, PropertyBrush& brush)
    : PropertyOption(info)
    , brush(brush)
{
    // Files store the style's number, not these names.
    addOption(Qt::NoBrush, tr("No Pattern"));
    addOption(Qt::SolidPattern, tr("Solid Pattern"));
    addOption(Qt::Dense1Pattern, tr("Dense 1 Pattern"));
    addOption(Qt::Dense2Pattern, tr("Dense 2 Pattern"));
    addOption(Qt::Dense3Pattern, tr("Dense 3 Pattern"));
    addOption(Qt::Dense4Pattern, tr("Dense 4 Pattern"));
    addOption(Qt::Dense5Pattern, tr("Dense 5 Pattern"));
    addOption(Qt::Dense6Pattern, tr("Dense 6 Pattern"));
    addOption(Qt::Dense7Pattern, tr("Dense 7 Pattern"));
    addOption(Qt::HorPattern, tr("Horizontal Pattern"));
    addOption(Qt::VerPattern, tr("Vertical Pattern"));
    addOption(Qt::CrossPattern, tr("Cross Pattern"));
    addOption(Qt::BDiagPattern, tr("Backward Diagonal Pattern"));
    addOption(Qt::FDiagPattern, tr("Forward Diagonal Pattern"));
    addOption(Qt::DiagCrossPattern, tr("Diagonal Crossing Pattern"));
}

int PropertyBrush::Style::getValue() const
{
    const int style = brush.getValue().style();
    return isOfferedStyle(style) ? style : int(Qt::NoBrush);
}

void PropertyBrush::Style::setValue(int value)
{
    QBrush b = brush.getValue();
    const Qt::BrushStyle style = isOfferedStyle(value) ? Qt::BrushStyle(value) : Qt::NoBrush;
    if (b.style() == style)
        return;
    if (b.gradient() || b.style() == Qt::TexturePattern) {
        // A plain style cannot be set on a gradient or texture brush: start a plain one.
        b = QBrush(b.color(), style);
    } else {
        b.setStyle(style);
    }
    brush.setValue(b);
}

} // namespace edit
} // namespace nu
