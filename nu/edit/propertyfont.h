#pragma once

#include "nu/edit/propertybasic.h"

#include <QFont>

namespace nu {
namespace edit {

// A font: the string of QFont::toString() in JSON and in snapshots, a font editor in the sheet.
class PropertyFont : public PropertyBasic
{
public:
    using PropertyBasic::PropertyBasic;
    using PropertyBasic::createWidget;

    virtual QFont getValue() const = 0;
    virtual void setValue(const QFont& value) = 0;

    // The font described by a variant's string; a default font when it describes none.
    static QFont toQFont(const QVariant& value);

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
