#include "app/panel/arrangement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tarnwick::panel {
namespace {

constexpr double iconGap = 6;       // between icon and panel
constexpr double screenMargin = 8;  // to the screen's sides, and of the panel beyond the icon's left side

Extent fillColumn(const Stack& stack, double inner, const MakeChild& makeChild, std::vector<Spot>& spots) {
  Extent used;
  for (std::size_t i = 0; i < stack.children.size(); ++i) {
    const Extent child = makeChild(i, inner);
    // What has no height, such as an empty list, has no distance either.
    if (used.height > 0 && child.height > 0) used.height += stack.spacing;
    const double overhang = stack.width ? std::max(child.width - inner, 0.0) : 0;
    spots[i] = {stack.insets.left - std::floor(overhang / 2), stack.insets.top + used.height};
    used = {std::max(used.width, child.width), used.height + child.height};
  }
  return used;
}

// Whoever grows comes last, and gets what is left.
Extent fillRow(const Stack& stack, double inner, const MakeChild& makeChild, std::vector<Spot>& spots) {
  const std::size_t count = stack.children.size();
  if (count == 0) return {};
  double left = inner - stack.spacing * static_cast<double>(count - 1);
  std::vector<Extent> children(count);
  for (const bool growing : {false, true}) {
    for (std::size_t i = 0; i < count; ++i) {
      if (stack.children[i].grows != growing) continue;
      children[i] = makeChild(i, std::max(left, 1.0));
      left -= children[i].width;
    }
  }
  double height = 0;
  for (const Extent& child : children) height = std::max(height, child.height);
  double x = stack.insets.left;
  bool filled = false;
  for (std::size_t i = 0; i < count; ++i) {
    // Whole points: a text between two pixels is blurred.
    const bool centred = stack.alignment == Stack::Alignment::centre;
    spots[i] = {x, stack.insets.top + (centred ? std::floor((height - children[i].height) / 2) : 0)};
    x += children[i].width + stack.spacing;
    if (stack.children[i].grows) x += std::max(left, 0.0);
    filled = filled || stack.children[i].grows;
  }
  return {filled ? inner : x - stack.insets.left - stack.spacing, height};
}

// The screen may be smaller than the panel: its first side is the one that stays visible.
double within(double value, double lowest, double highest) {
  return std::max(std::min(value, highest), lowest);
}

double leftSide(const Area& icon, const Extent& panel, const Area& visible) {
  const double rightmost = visible.x + visible.width - panel.width - screenMargin;
  return within(icon.x - screenMargin, visible.x + screenMargin, rightmost);
}

double topSide(const Area& icon, const Extent& panel, const Area& visible) {
  const double lowest = visible.y + visible.height - panel.height - screenMargin;
  return within(icon.y - screenMargin, visible.y + screenMargin, lowest);
}

enum class Side { top, bottom, left, right };

// How far a point is from each side, negative beyond it.
std::array<std::pair<double, Side>, 4> distances(const Spot& point, const Area& area) {
  return {{{point.y - area.y, Side::top},
           {area.y + area.height - point.y, Side::bottom},
           {point.x - area.x, Side::left},
           {area.x + area.width - point.x, Side::right}}};
}

Side barOf(const Area& icon, const Area& visible, std::optional<Stack::Direction> direction) {
  const auto sides = distances({icon.x + icon.width / 2, icon.y + icon.height / 2}, visible);
  const auto* first = sides.begin() + (direction == Stack::Direction::vertical ? 2 : 0);
  const auto* last = sides.end() - (direction == Stack::Direction::horizontal ? 2 : 0);
  return std::min_element(first, last)->second;
}

}  // namespace

Arrangement arrange(const Stack& stack, double width, const MakeChild& makeChild) {
  const double outer = stack.width ? std::min(*stack.width, width) : width;
  const double sides = stack.insets.left + stack.insets.right;
  Arrangement result{{}, std::vector<Spot>(stack.children.size())};
  const bool vertical = stack.direction == Stack::Direction::vertical;
  const Extent used = (vertical ? fillColumn : fillRow)(stack, outer - sides, makeChild, result.spots);
  result.size = {stack.width ? outer : used.width + sides,
                 used.height + stack.insets.top + stack.insets.bottom};
  return result;
}

Spot underIcon(const Area& icon, const Extent& panel, const Area& visible) {
  return {leftSide(icon, panel, visible), icon.y - iconGap - panel.height};
}

Spot besideIcon(const Area& icon, const Extent& panel, const Area& visible,
                std::optional<Stack::Direction> direction) {
  const Side bar = barOf(icon, visible, direction);
  if (bar == Side::left || bar == Side::right) {
    const double x = bar == Side::left ? icon.x + icon.width + iconGap : icon.x - iconGap - panel.width;
    return {within(x, visible.x, visible.x + visible.width - panel.width), topSide(icon, panel, visible)};
  }
  const double y = bar == Side::top ? icon.y + icon.height + iconGap : icon.y - iconGap - panel.height;
  return {leftSide(icon, panel, visible), within(y, visible.y, visible.y + visible.height - panel.height)};
}

Spot likelyIcon(const Area& screen, const Area& visible) {
  const double right = screen.x + screen.width;
  const double bottom = screen.y + screen.height;
  if (visible.y > screen.y) return {right - 1, screen.y};
  if (visible.y + visible.height < bottom || visible.x + visible.width < right)
    return {right - 1, bottom - 1};
  return visible.x > screen.x ? Spot{screen.x, bottom - 1} : Spot{right - 1, screen.y};
}

}  // namespace tarnwick::panel
