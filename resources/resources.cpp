#include "resources/resources.h"

#include <QtGlobal>

static void initSorvikResources()
{
    Q_INIT_RESOURCE(sorvik);
}

namespace Sorvik {

void initResources()
{
    initSorvikResources();
}

} // namespace Sorvik
