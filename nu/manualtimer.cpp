#include "nu/manualtimer.h"

namespace nu {

ManualTimer::ManualTimer(int d)
{
    restart(d);
}

void ManualTimer::setDelta(int d)
{
    delta = d >= 1 ? d : 1;
}

void ManualTimer::restart(int d)
{
    current = 0;
    last = 0;
    setDelta(d);
}

bool ManualTimer::isTime(int n)
{
    current = n;
    if (current - last < delta)
        return false;
    last = current;
    return true;
}

int ManualTimer::elapsed() const
{
    return current - last;
}

} // namespace nu
