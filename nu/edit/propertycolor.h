#pragma once

#include "nu/edit/propertybasic.h"

#include <QColor>

namespace nu {
namespace edit {

// A colour: "#AARRGGBB" in JSON and in snapshots, a colour editor in the sheet.
class PropertyColor : public PropertyBasic
{
public:
    using PropertyBasic::PropertyBasic;
    using PropertyBasic::createWidget;

    virtual QColor getValue() const = 0;
    virtual void setValue(const QColor& value) = 0;

    // The colour of a "#AARRGGBB" (or any other colour name) variant; invalid for anything else.
    static QColor toQColor(const QVariant& value);
    static QString toString(const QColor& color);

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
