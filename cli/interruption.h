#pragma once

namespace Sorvik {
namespace Cli {

// Turns Ctrl-C (SIGINT) and SIGTERM into a request to stop that long jobs check, while this
// object lives. A second signal ends the program at once, as usual.
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    static bool isRequested();
};

} // namespace Cli
} // namespace Sorvik
