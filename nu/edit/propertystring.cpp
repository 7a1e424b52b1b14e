#include "nu/edit/propertystring.h"

#include <QLineEdit>
#include <QSignalBlocker>

namespace nu {
namespace edit {

QJsonValue PropertyString::getJsonValue() const
{
    return getValue();
}

void PropertyString::setJsonValue(const QJsonValue& value)
{
    setValue(value.toString());
}

std::unique_ptr<QWidget> PropertyString::createWidget()
{
    auto edit = std::make_unique<QLineEdit>();
    edit->setText(getValue());
    return edit;
}

void PropertyString::updateWidget(QWidget* widget)
{
    if (auto edit = qobject_cast<QLineEdit*>(widget)) {
        const QSignalBlocker blocker(edit);
        edit->setText(getValue());
    }
}

void PropertyString::updateFromWidget(QWidget* widget)
{
    if (auto edit = qobject_cast<QLineEdit*>(widget))
        setValue(edit->text());
}

QVariant PropertyString::getVariant() const
{
    return getValue();
}

void PropertyString::setVariant(const QVariant& value)
{
    setValue(value.toString());
}

const char* PropertyString::getWidgetSignal() const
{
    return SIGNAL(editingFinished());
}

} // namespace edit
} // namespace nu
