#pragma once

#include "nu/edit/propertyinfo.h"

#include <QCoreApplication>
#include <QJsonValue>

namespace nu {
namespace edit {

// One named, typed, editable value of a chart item (or a group of them, see PropertySet). A
// property reads and writes the item it is bound to; it never owns that item.
class Property
{
    Q_DECLARE_TR_FUNCTIONS(nu::edit::Property)
public:
    explicit Property(const PropertyInfo& info);
    virtual ~Property();

    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;

    // The value as the chart file stores it. A value of the wrong kind, or an undefined one (a
    // missing key), is read as the type's zero.
    virtual QJsonValue getJsonValue() const = 0;
    virtual void setJsonValue(const QJsonValue& value) = 0;

    const PropertyInfo& getInfo() const { return info; }
    const QString& getName() const { return info.name; }
    const QString& getLabel() const { return info.label; }
    const QString& getDescription() const { return info.description; }

private:
    PropertyInfo info;
};

} // namespace edit
} // namespace nu
