#include "cli/interruption.h"

#include <csignal>

namespace Sorvik {
namespace Cli {

namespace {

volatile std::sig_atomic_t requested = 0;
struct sigaction previousInt;
struct sigaction previousTerm;

extern "C" void onSignal(int)
{
    requested = 1;
}

} // namespace

Interruption::Interruption()
{
    requested = 0;
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    // The handler goes away after the first signal, so a second one stops the program.
    action.sa_flags = SA_RESETHAND;
    sigaction(SIGINT, &action, &previousInt);
    sigaction(SIGTERM, &action, &previousTerm);
}

Interruption::~Interruption()
{
    sigaction(SIGINT, &previousInt, nullptr);
    sigaction(SIGTERM, &previousTerm, nullptr);
}

bool Interruption::isRequested()
{
    return requested != 0;
}

} // namespace Cli
} // namespace Sorvik
