#include "nu/edit/propertyfont.h"

#include "nu/edit/fonteditwidget.h"

#include <QSignalBlocker>

namespace nu {
namespace edit {

QFont PropertyFont::toQFont(const QVariant& value)
{
    QFont font;
    const QString description = value.toString();
    // An empty description is common (a missing key) and QFont would warn about it.
    if (!description.isEmpty() && !font.fromString(description))
        return QFont();
    return font;
}

QJsonValue PropertyFont::getJsonValue() const
{
    return getValue().toString();
}

void PropertyFont::setJsonValue(const QJsonValue& value)
{
    setValue(toQFont(value.toString()));
}

std::unique_ptr<QWidget> PropertyFont::createWidget()
{
    auto editor = std::make_unique<FontEditWidget>();
    editor->setFont(getValue());
    return editor;
}

void PropertyFont::updateWidget(QWidget* widget)
{
    if (auto editor = qobject_cast<FontEditWidget*>(widget)) {
        const QSignalBlocker blocker(editor);
        editor->setFont(getValue());
    }
}

void PropertyFont::updateFromWidget(QWidget* widget)
{
    if (auto editor = qobject_cast<FontEditWidget*>(widget))
        setValue(editor->getFont());
}

QVariant PropertyFont::getVariant() const
{
    return getValue().toString();
}

void PropertyFont::setVariant(const QVariant& value)
{
    setValue(toQFont(value));
}

const char* PropertyFont::getWidgetSignal() const
{
    return SIGNAL(editingFinished());
}

} // namespace edit
} // namespace nu
