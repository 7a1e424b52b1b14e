#pragma once

#include "nu/edit/propertybasic.h"

namespace nu {
namespace edit {

// A real number: a JSON number, a spin box over min()..max() in the sheet. The range bounds the
// editor only; setValue takes any finite value (a value that is not finite is written as 0).
class PropertyDouble : public PropertyBasic
{
public:
    using PropertyBasic::PropertyBasic;
    using PropertyBasic::createWidget;

    virtual double getValue() const = 0;
    virtual void setValue(double value) = 0;
    virtual double min() const;
    virtual double max() const;

    QJsonValue getJsonValue() const override;
    void setJsonValue(const QJsonValue& value) override;
    std::unique_ptr<QWidget> createWidget() override;
    void updateWidget(QWidget* widget) override;
    // An editor still showing the current value (rounded to its decimals and bounded by its
    // range) writes nothing, so applying the sheet never rounds values the user did not touch.
    void updateFromWidget(QWidget* widget) override;
    QVariant getVariant() const override;
    void setVariant(const QVariant& value) override;

protected:
    const char* getWidgetSignal() const override;

private:
    void setFiniteValue(double value);
};

// A length or distance: not negative in the editor.
class PropertyDoublePositive : public PropertyDouble
{
public:
    using PropertyDouble::PropertyDouble;
    double min() const override;
};

// An angle in degrees, -180..180 in the editor.
class PropertyDoubleAngle : public PropertyDouble
{
public:
    using PropertyDouble::PropertyDouble;
    double min() const override;
    double max() const override;
};

} // namespace edit
} // namespace nu
