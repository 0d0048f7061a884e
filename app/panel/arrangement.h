// Where things go, the same for every painter: the children of a stack, and the panel's window beside its
// icon. Pure functions; lengths are points.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

struct Extent {
  double width = 0, height = 0;
  bool operator==(const Extent&) const = default;
};

struct Spot {
  double x = 0, y = 0;
  bool operator==(const Spot&) const = default;
};

struct Area {
  double x = 0, y = 0, width = 0, height = 0;  // x and y: the corner where both are least
};

struct Arrangement {
  Extent size;              // of the whole stack, insets included
  std::vector<Spot> spots;  // of the children's upper left corners, in their order; y grows downwards
};

// Makes that child, no wider than it is told, and tells its size.
using MakeChild = std::function<Extent(std::size_t child, double width)>;

// `makeChild` is called once for each child: in a row, those that grow come last. A child that is wider than
// a column of a given width hangs over on both sides alike.
Arrangement arrange(const Stack& stack, double width, const MakeChild& makeChild);

// Where a panel of that size drops down under its icon in a menu bar, between the sides of `visible`, which
// is the screen without its bars. On a screen whose y grows upwards.
Spot underIcon(const Area& icon, const Extent& panel, const Area& visible);

// Where the panel goes beside an icon anywhere: below it in the upper half of the screen, above it in the
// lower half, and wholly inside `visible`. On a screen whose y grows downwards. A point works as an icon too.
Spot besideIcon(const Area& icon, const Extent& panel, const Area& visible);

}  // namespace tarnwick::panel
