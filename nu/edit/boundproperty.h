#pragma once

#include "nu/edit/propertyinfo.h"

#include <type_traits>
#include <utility>

namespace nu {
namespace edit {

namespace detail {
template <class Setter>
struct SetterArgument;
template <class Class, class Argument>
struct SetterArgument<void (Class::*)(Argument)>
{
    using Type = Argument;
};
} // namespace detail

// A property that reads and writes one value of a graphics item through two of the item's
// member functions. Base is the kind of value (PropertyDouble, PropertyPen, ...); the item,
// given to the constructor, outlives the property.
template <class Base, class Item, auto getter, auto setter>
class BoundProperty : public Base
{
    using Value = std::decay_t<decltype(std::declval<const Base&>().getValue())>;
    using Argument = typename detail::SetterArgument<decltype(&Base::setValue)>::Type;

public:
    BoundProperty(const PropertyInfo& info, Item& item)
        : Base(info)
        , item(item)
    {
    }

    Value getValue() const override { return (item.*getter)(); }
    void setValue(Argument value) override { (item.*setter)(value); }

protected:
    Item& item;
};

} // namespace edit
} // namespace nu
