#include "nu/edit/propertyoption.h"

#include <QComboBox>
#include <QSignalBlocker>

namespace nu {
namespace edit {

void PropertyOption::addOption(int id, const QString& name)
{
    options[id] = name;
}

int PropertyOption::getIdByName(const QString& name) const
{
    for (const auto& option : options) {
        if (option.second == name)
            return option.first;
    }
    return 0;
}

QString PropertyOption::getOptionName(int id) const
{
    const auto found = options.find(id);
    return found == options.end() ? QString() : found->second;
}

QJsonValue PropertyOption::getJsonValue() const
{
    return getValue();
}

void PropertyOption::setJsonValue(const QJsonValue& value)
{
    setValue(value.toInt());
}

std::unique_ptr<QWidget> PropertyOption::createWidget()
{
    auto box = std::make_unique<QComboBox>();
    for (const auto& option : options)
        box->addItem(option.second);
    box->setCurrentText(getOptionName(getValue()));
    return box;
}

void PropertyOption::updateWidget(QWidget* widget)
{
    if (auto box = qobject_cast<QComboBox*>(widget)) {
        const QSignalBlocker blocker(box);
        box->setCurrentText(getOptionName(getValue()));
    }
}

void PropertyOption::updateFromWidget(QWidget* widget)
{
    if (auto box = qobject_cast<QComboBox*>(widget))
        setValue(getIdByName(box->currentText()));
}

QVariant PropertyOption::getVariant() const
{
    return getValue();
}

void PropertyOption::setVariant(const QVariant& value)
{
    setValue(value.toInt());
}

const char* PropertyOption::getWidgetSignal() const
{
    return SIGNAL(currentIndexChanged(int));
}

} // namespace edit
} // namespace nu
