#pragma once

namespace nu {

// A range on the unit circle (0..1), used to hand out equal shares of the hue circle: ++ moves
// to the next adjacent range of the same length, / splits a range into n.
class CyclicRange
{
public:
    CyclicRange(double start = 0.0, double length = 1.0);
    CyclicRange(const CyclicRange& other);
    CyclicRange& operator=(const CyclicRange& other) = default;

    // Removes one period from values above 1.0; negative values stay as they are.
    static double normalize(double x);

    double getStart() const { return start; }
    double getLength() const { return length; }
    double getCenter() const;

    CyclicRange& operator++();
    // A range with the same start and a length divided by n; n = 0 leaves the length as it is.
    CyclicRange operator/(int n) const;

private:
    double start;
    double length;
};

} // namespace nu
