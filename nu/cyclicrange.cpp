#include "nu/cyclicrange.h"

namespace nu {

CyclicRange::CyclicRange(double s, double l)
    : start(normalize(s))
    , length(l)
{
}

CyclicRange::CyclicRange(const CyclicRange& other)
    : CyclicRange(other.start, other.length)
{
}

double CyclicRange::normalize(double x)
{
    return x > 1.0 ? x - 1.0 : x;
}

double CyclicRange::getCenter() const
{
    return normalize(start + length / 2);
}

CyclicRange& CyclicRange::operator++()
{
    start = normalize(start + length);
    return *this;
}

CyclicRange CyclicRange::operator/(int n) const
{
    if (n == 0)
        return *this;
    return CyclicRange(start, length / n);
}

} // namespace nu
