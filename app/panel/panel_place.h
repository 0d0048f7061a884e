// Where the panel drops down under its icon in a menu bar. A pure function; points of the screen, whose y
// grows upwards.
#pragma once

#include "app/panel/arrangement.h"

namespace tarnwick::panel {

struct Area {
  double x = 0, y = 0, width = 0, height = 0;  // x and y: the lower left corner
};

// The lower left corner of a panel of that size under the icon, between the sides of `visible`, which is the
// screen without its bars. Where the screen is too narrow, the panel's left side stays on it.
Spot panelOrigin(const Area& icon, const Extent& panel, const Area& visible);

}  // namespace tarnwick::panel
