#pragma once

#include "nu/edit/propertybasic.h"

namespace nu {
namespace edit {

// A yes/no value: a JSON boolean, a check box in the sheet.
class PropertyBool : public PropertyBasic
{
public:
    using PropertyBasic::PropertyBasic;
    using PropertyBasic::createWidget;

    virtual bool getValue() const = 0;
    virtual void setValue(bool value) = 0;

    QJsonValue getJsonValue() const override;
    void setJsonValue(const QJsonValue& value) override;
    std::unique_ptr<QWidget> createWidget() override;
    void updateWidget(QWidget* widget) override;
    void updateFromWidget(QWidget* widget) override;
    QVariant getVariant() const override;
    void setVariant(const QVariant& value) override;

protected:
    const char* getWidgetSignal() const override;
};

} // namespace edit
} // namespace nu
