// Larger texts need larger places. Pure function.
#pragma once

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

// The same tree with every length multiplied.
Node enlarged(Node node, double factor);

}  // namespace tarnwick::panel
