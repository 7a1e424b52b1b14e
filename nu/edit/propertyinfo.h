#pragma once

#include <QString>

namespace nu {
namespace edit {

// The identity of a property: its key (in the chart file and in undo snapshots), the text of its
// row in the property sheet, and an explanation. Members of a compound carry the compound's name
// with a dotted suffix ("position.x").
class PropertyInfo
{
public:
    PropertyInfo() = default;
    PropertyInfo(const QString& name, const QString& label, const QString& description);
    // Name, label and description all the same literal, as item types declare most properties.
    explicit PropertyInfo(const QString& nameLabelDescription);

    QString name;
    QString label;
    QString description;
};

} // namespace edit
} // namespace nu
