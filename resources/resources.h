#pragma once

namespace Sorvik {

// Registers the icons and images compiled into the static resources library; call once before
// the first ":/..." lookup (the linker drops a static library's resource initialiser otherwise).
void initResources();

} // namespace Sorvik
