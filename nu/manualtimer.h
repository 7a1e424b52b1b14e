#pragma once

namespace nu {

// A throttle on a counter, not on a clock: isTime(n) answers true each time n has moved on by at
// least delta since the last true answer. Used to keep progress signals to a few hundred a phase
// without reading the clock.
class ManualTimer
{
public:
    explicit ManualTimer(int delta = 1);

    void setDelta(int d);
    void restart(int d);
    bool isTime(int n);
    int elapsed() const;

private:
    int delta = 1;
    int current = 0;
    int last = 0;
};

} // namespace nu
