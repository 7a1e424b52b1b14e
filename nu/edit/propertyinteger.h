#pragma once

#include "nu/edit/propertybasic.h"

namespace nu {
namespace edit {

// A whole number: a JSON integer, a spin box over min()..max() in the sheet. The range bounds the
// editor only; setValue takes any int.
class PropertyInteger : public PropertyBasic
{
public:
    using PropertyBasic::PropertyBasic;
    using PropertyBasic::createWidget;

    virtual int getValue() const = 0;
    virtual void setValue(int value) = 0;
    virtual int min() const;
    virtual int max() const;

    QJsonValue getJsonValue() const override;
    void setJsonValue(const QJsonValue& value) override;
    std::unique_ptr<QWidget> createWidget() override;
    void updateWidget(QWidget* widget) override;
    // An editor still showing the current value (as far as its range lets it) writes nothing,
    // so applying the sheet never clamps values the user did not touch.
    void updateFromWidget(QWidget* widget) override;
    QVariant getVariant() const override;
    void setVariant(const QVariant& value) override;

protected:
    const char* getWidgetSignal() const override;
};

} // namespace edit
} // namespace nu
