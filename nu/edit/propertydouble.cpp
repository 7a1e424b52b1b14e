#include "nu/edit/propertydouble.h"

#include <QDoubleSpinBox>
#include <QSignalBlocker>

#include <cmath>

namespace nu {
namespace edit {

double PropertyDouble::min() const
{
    return -99999.9;
}

double PropertyDouble::max() const
{
    return 99999.9;
}

QJsonValue PropertyDouble::getJsonValue() const
{
    return getValue();
}

void PropertyDouble::setJsonValue(const QJsonValue& value)
{
    setFiniteValue(value.toDouble());
}

std::unique_ptr<QWidget> PropertyDouble::createWidget()
{
    auto box = std::make_unique<QDoubleSpinBox>();
    box->setMinimum(min());
    box->setMaximum(max());
    box->setValue(getValue());
    QDoubleSpinBox* edited = box.get();
    QObject::connect(edited, &QDoubleSpinBox::textChanged, edited, [edited] { setUserEdited(edited, true); });
    return box;
}

void PropertyDouble::updateWidget(QWidget* widget)
{
    if (auto box = qobject_cast<QDoubleSpinBox*>(widget)) {
        const QSignalBlocker blocker(box);
        box->setValue(getValue());
        setUserEdited(box, false);
    }
}

void PropertyDouble::updateFromWidget(QWidget* widget)
{
    auto box = qobject_cast<QDoubleSpinBox*>(widget);
    if (!box)
        return;
    // What the box would show for the current value: QDoubleSpinBox rounds to its decimals.
    const double shown = qBound(box->minimum(),
                                QString::number(getValue(), 'f', box->decimals()).toDouble(),
                                box->maximum());
    if (box->value() == shown && !isUserEdited(box))
        return;
    setUserEdited(box, false);
    setValue(box->value());
}

QVariant PropertyDouble::getVariant() const
{
    return getValue();
}

void PropertyDouble::setVariant(const QVariant& value)
{
    setFiniteValue(value.toDouble());
}

const char* PropertyDouble::getWidgetSignal() const
{
    return SIGNAL(editingFinished());
}

void PropertyDouble::setFiniteValue(double value)
{
    setValue(std::isfinite(value) ? value : 0.0);
}

double PropertyDoublePositive::min() const
{
    return 0.0;
}

double PropertyDoubleAngle::min() const
{
    return -180.0;
}

double PropertyDoubleAngle::max() const
{
    return 180.0;
}

} // namespace edit
} // namespace nu
