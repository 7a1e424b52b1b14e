#pragma once

#include "nu/edit/propertybasic.h"

#include <map>

namespace nu {
namespace edit {

// One of a list of named choices: the choice's id in JSON, a combo box of the names (in ascending
// id order) in the sheet.
class PropertyOption : public PropertyBasic
{
public:
    using PropertyBasic::PropertyBasic;
    using PropertyBasic::createWidget;

    virtual int getValue() const = 0;
    virtual void setValue(int value) = 0;

    void addOption(int id, const QString& name);
    // The first id (ascending) with this name; 0 when no option has it.
    int getIdByName(const QString& name) const;
    // Empty for an id that is not an option.
    QString getOptionName(int id) const;
    const std::map<int, QString>& getOptions() const { return options; }

    QJsonValue getJsonValue() const override;
    void setJsonValue(const QJsonValue& value) override;
    std::unique_ptr<QWidget> createWidget() override;
    void updateWidget(QWidget* widget) override;
    void updateFromWidget(QWidget* widget) override;
    QVariant getVariant() const override;
    void setVariant(const QVariant& value) override;

protected:
    const char* getWidgetSignal() const override;

private:
    std::map<int, QString> options;
};

} // namespace edit
} // namespace nu
