#pragma once

#include "nu/edit/propertybasic.h"

namespace nu {
namespace edit {

// A text: a JSON string, a line edit in the sheet.
class PropertyString : public PropertyBasic
{
public:
    using PropertyBasic::PropertyBasic;
    using PropertyBasic::createWidget;

    virtual QString getValue() const = 0;
    virtual void setValue(const QString& value) = 0;

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
