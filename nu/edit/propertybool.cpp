#include "nu/edit/propertybool.h"

#include <QCheckBox>
#include <QSignalBlocker>

namespace nu {
namespace edit {

QJsonValue PropertyBool::getJsonValue() const
{
    return getValue();
}

void PropertyBool::setJsonValue(const QJsonValue& value)
{
    setValue(value.toBool());
}

std::unique_ptr<QWidget> PropertyBool::createWidget()
{
    auto box = std::make_unique<QCheckBox>();
    box->setChecked(getValue());
    return box;
}

void PropertyBool::updateWidget(QWidget* widget)
{
    if (auto box = qobject_cast<QCheckBox*>(widget)) {
        const QSignalBlocker blocker(box);
        box->setChecked(getValue());
    }
}

void PropertyBool::updateFromWidget(QWidget* widget)
{
    if (auto box = qobject_cast<QCheckBox*>(widget))
        setValue(box->isChecked());
}

QVariant PropertyBool::getVariant() const
{
    return getValue();
}

void PropertyBool::setVariant(const QVariant& value)
{
    setValue(value.toBool());
}

const char* PropertyBool::getWidgetSignal() const
{
    return SIGNAL(stateChanged(int));
}

} // namespace edit
} // namespace nu
