#pragma once

#include "nu/edit/propertyoption.h"
#include "nu/edit/propertyset.h"

namespace nu {

namespace graphics {
class AnchorItem;
}

namespace edit {

// The anchor of a text box, edited and saved as "<name>.horizontal" (Left, Center, Right) and
// "<name>.vertical" (Top, Center, Bottom), ids as the anchor enumerations.
class PropertyAnchor : public PropertySet
{
public:
    PropertyAnchor(const PropertyInfo& info, graphics::AnchorItem& item);

    graphics::AnchorItem& getItem() const { return item; }

    // A value outside the enumeration reads as 1 (Center); writing an id outside 0..2 does nothing.
    class Horizontal : public PropertyOption
    {
    public:
        Horizontal(const PropertyInfo& info, PropertyAnchor& anchor);
        int getValue() const override;
        void setValue(int value) override;

    private:
        PropertyAnchor& anchor;
    };

    class Vertical : public PropertyOption
    {
    public:
        Vertical(const PropertyInfo& info, PropertyAnchor& anchor);
        int getValue() const override;
        void setValue(int value) override;

    private:
        PropertyAnchor& anchor;
    };

private:
    graphics::AnchorItem& item;
};

} // namespace edit
} // namespace nu
