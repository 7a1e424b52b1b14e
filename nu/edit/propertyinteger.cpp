#include "nu/edit/propertyinteger.h"

#include <QSignalBlocker>
#include <QSpinBox>

namespace nu {
namespace edit {

int PropertyInteger::min() const
{
    return 0;
}

int PropertyInteger::max() const
{
    return 999999999;
}

QJsonValue PropertyInteger::getJsonValue() const
{
    return getValue();
}

void PropertyInteger::setJsonValue(const QJsonValue& value)
{
    // Fractions and numbers beyond an int read as 0, like any other wrong kind.
    setValue(value.toInt());
}

std::unique_ptr<QWidget> PropertyInteger::createWidget()
{
    auto box = std::make_unique<QSpinBox>();
    box->setRange(min(), max());
    box->setValue(getValue());
    QSpinBox* edited = box.get();
    QObject::connect(edited, &QSpinBox::textChanged, edited, [edited] { setUserEdited(edited, true); });
    return box;
}

void PropertyInteger::updateWidget(QWidget* widget)
{
    if (auto box = qobject_cast<QSpinBox*>(widget)) {
        const QSignalBlocker blocker(box);
        box->setValue(getValue());
        setUserEdited(box, false);
    }
}

void PropertyInteger::updateFromWidget(QWidget* widget)
{
    auto box = qobject_cast<QSpinBox*>(widget);
    if (!box)
        return;
    const int current = getValue();
    if (box->value() == qBound(box->minimum(), current, box->maximum()) && !isUserEdited(box))
        return;
    setUserEdited(box, false);
    setValue(box->value());
}

QVariant PropertyInteger::getVariant() const
{
    return getValue();
}

void PropertyInteger::setVariant(const QVariant& value)
{
    setValue(value.toInt());
}

const char* PropertyInteger::getWidgetSignal() const
{
    return SIGNAL(editingFinished());
}

} // namespace edit
} // namespace nu
