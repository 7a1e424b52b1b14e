#include "nu/edit/propertyitem.h"

#include <QJsonObject>

namespace nu {
namespace edit {

QJsonValue PropertyItem::getJsonValue() const
{
    QJsonObject object;
    object.insert(QStringLiteral("id"), qint64(getId()));
    object.insert(QStringLiteral("parent-id"), qint64(getParentId()));
    object.insert(QStringLiteral("type"), getType());
    object.insert(QStringLiteral("data"), PropertySet::getJsonValue());
    return object;
}

void PropertyItem::setJsonValue(const QJsonValue& value)
{
    PropertySet::setJsonValue(value.toObject().value(QStringLiteral("data")));
}

bool PropertyItem::operator==(const PropertyItem& other) const
{
    return getId() == other.getId() && getType() == other.getType();
}

} // namespace edit
} // namespace nu
