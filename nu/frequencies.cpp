#include "nu/frequencies.h"

#include <limits>

namespace nu {

namespace {

qint64 saturatingAdd(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        return b > 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
    return sum;
}

} // namespace

void Frequencies::add(const QString& key)
{
    add(key, 1);
}

void Frequencies::add(const QString& key, qint64 n)
{
    qint64& tally = tallies[key];
    tally = saturatingAdd(tally, n);
    total = saturatingAdd(total, n);
}

qint64 Frequencies::get(const QString& key) const
{
    return tallies.value(key, 0);
}

QStringList Frequencies::keys() const
{
    return tallies.keys();
}

} // namespace nu
