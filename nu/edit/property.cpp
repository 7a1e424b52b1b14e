#include "nu/edit/property.h"

namespace nu {
namespace edit {

Property::Property(const PropertyInfo& info)
    : info(info)
{
}

Property::~Property() = default;

} // namespace edit
} // namespace nu
