// Where things go, the same for every painter: the children of a stack, and the panel's window beside its
// icon. Pure functions; lengths are points.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
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

// Where the panel goes beside an icon anywhere: on the inner side of the bar that the icon lies in, and
// wholly inside `visible`. The bar is at the side of `visible` that the icon is nearest to or furthest
// beyond, of those that a bar of that `direction` can be at; absent: nobody tells. On a screen whose y grows
// downwards. A point works as an icon too.
Spot besideIcon(const Area& icon, const Extent& panel, const Area& visible,
                std::optional<Stack::Direction> direction = {});

// Where the icon is likely to be when nobody tells: at the end of the widest bar that `visible` leaves free
// of `screen`, in the upper right corner where there is none. On a screen whose y grows downwards.
Spot likelyIcon(const Area& screen, const Area& visible);

}  // namespace tarnwick::panel
