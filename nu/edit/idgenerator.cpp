#include "nu/edit/idgenerator.h"

namespace nu {
namespace edit {

long IdGenerator::registerId(long id)
{
    if (id < counter)
        counter = id;
    return id;
}

} // namespace edit
} // namespace nu
