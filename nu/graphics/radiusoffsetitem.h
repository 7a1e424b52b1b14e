#pragma once

namespace nu {
namespace graphics {

// The width of an item that spans from one radius to another (a ring's width), as the editor's
// radius-offset property reads and writes it.
class RadiusOffsetItem
{
public:
    virtual ~RadiusOffsetItem() = default;

    virtual double getRadiusOffset() const = 0;
    // Values below getRadiusOffsetMinimum() are raised to it.
    virtual void setRadiusOffset(double offset) = 0;
    virtual double getRadiusOffsetMinimum() const = 0;
};

} // namespace graphics
} // namespace nu
