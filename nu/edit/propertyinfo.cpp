#include "nu/edit/propertyinfo.h"

namespace nu {
namespace edit {

PropertyInfo::PropertyInfo(const QString& name, const QString& label, const QString& description)
    : name(name)
    , label(label)
    , description(description)
{
}

PropertyInfo::PropertyInfo(const QString& nameLabelDescription)
    : PropertyInfo(nameLabelDescription, nameLabelDescription, nameLabelDescription)
{
}

} // namespace edit
} // namespace nu
