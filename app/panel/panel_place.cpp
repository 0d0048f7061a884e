#include "app/panel/panel_place.h"

#include <algorithm>

namespace tarnwick::panel {
namespace {

constexpr double gap = 6;     // between icon and panel
constexpr double margin = 8;  // to the screen's sides, and of the panel beyond the icon's left side

}  // namespace

Spot panelOrigin(const Area& icon, const Extent& panel, const Area& visible) {
  const double rightmost = visible.x + visible.width - panel.width - margin;
  return {std::max(std::min(icon.x - margin, rightmost), visible.x + margin), icon.y - gap - panel.height};
}

}  // namespace tarnwick::panel
