// Where the children of a stack go, the same for every painter. A painter makes each child no wider than it
// is told and says how large it became. Lengths are points; y grows downwards.
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

struct Arrangement {
  Extent size;              // of the whole stack, insets included
  std::vector<Spot> spots;  // of the children's upper left corners, in their order
};

// Makes that child and tells its size.
using MakeChild = std::function<Extent(std::size_t child, double width)>;

// `makeChild` is called once for each child: in a row, those that grow come last.
Arrangement arrange(const Stack& stack, double width, const MakeChild& makeChild);

}  // namespace tarnwick::panel
