#pragma once

#include "nu/edit/propertyset.h"

#include <vector>

namespace nu {
namespace edit {

// An editable item: its property set plus its identity (id and type number) and its place in the
// item tree. In the chart file it is {"id", "parent-id", "type", "data"}, "data" being the flat
// object of its properties.
class PropertyItem : public PropertySet
{
public:
    // 64-bit: the chart file writes ids as 64-bit integers.
    using Id = long;

    using PropertySet::PropertySet;

    virtual Id getId() const = 0;
    virtual int getType() const = 0;
    // 0 for an item at the top level.
    virtual Id getParentId() const = 0;
    // In the order the children were added.
    virtual std::vector<Id> getChildrenId() const = 0;
    // Null makes the item top-level. A parent that would make a cycle (the item itself or one of
    // its descendants) is refused and nothing changes.
    virtual void setParent(PropertyItem* parent) = 0;

    QJsonValue getJsonValue() const override;
    // Reads only the "data" member; id, parent and type are the item manager's business.
    void setJsonValue(const QJsonValue& value) override;

    // The same item: same id and type.
    bool operator==(const PropertyItem& other) const;
    bool operator!=(const PropertyItem& other) const { return !(*this == other); }
};

} // namespace edit
} // namespace nu
