#include "nu/edit/propertycolor.h"

#include "nu/edit/coloreditwidget.h"

#include <QSignalBlocker>

namespace nu {
namespace edit {

QColor PropertyColor::toQColor(const QVariant& value)
{
    const QString name = value.toString();
    // Checked first: QColor warns about every name it does not know.
    return QColor::isValidColor(name) ? QColor(name) : QColor();
}

QString PropertyColor::toString(const QColor& color)
{
    return color.name(QColor::HexArgb);
}

QJsonValue PropertyColor::getJsonValue() const
{
    return toString(getValue());
}

void PropertyColor::setJsonValue(const QJsonValue& value)
{
    setValue(toQColor(value.toString()));
}

std::unique_ptr<QWidget> PropertyColor::createWidget()
{
    auto editor = std::make_unique<ColorEditWidget>();
    editor->setColor(getValue());
    return editor;
}

void PropertyColor::updateWidget(QWidget* widget)
{
    if (auto editor = qobject_cast<ColorEditWidget*>(widget)) {
        const QSignalBlocker blocker(editor);
        editor->setColor(getValue());
    }
}

void PropertyColor::updateFromWidget(QWidget* widget)
{
    if (auto editor = qobject_cast<ColorEditWidget*>(widget))
        setValue(editor->getColor());
}

QVariant PropertyColor::getVariant() const
{
    return toString(getValue());
}

void PropertyColor::setVariant(const QVariant& value)
{
    setValue(toQColor(value));
}

const char* PropertyColor::getWidgetSignal() const
{
    return SIGNAL(editingFinished());
}

} // namespace edit
} // namespace nu
