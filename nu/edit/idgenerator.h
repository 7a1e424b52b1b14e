#pragma once

namespace nu {
namespace edit {

// Hands out item ids 1, 2, 3... Registering an id that comes back (undo re-creating an item)
// lowers the counter to it when it is smaller and never raises it; the item manager skips ids
// that are still in use.
class IdGenerator
{
public:
    long newId() { return ++counter; }
    void reset() { counter = 0; }
    long registerId(long id);

private:
    long counter = 0;
};

} // namespace edit
} // namespace nu
