#include "app/panel/panel_tree.h"

#include <tuple>

namespace tarnwick::panel {

// Written out: some compilers cannot derive a comparison that leads back to itself.

bool Stack::operator==(const Stack& other) const {
  const auto all = [](const Stack& s) {
    return std::tie(s.direction, s.spacing, s.insets, s.alignment, s.width, s.children, s.toolTip);
  };
  return all(*this) == all(other);
}

bool Box::operator==(const Box& other) const {
  const auto all = [](const Box& b) {
    return std::tie(b.insets, b.cornerRadius, b.background, b.opacity, b.width, b.child);
  };
  return all(*this) == all(other);
}

bool Scroll::operator==(const Scroll& other) const {
  return width == other.width && heightCap == other.heightCap && child == other.child;
}

bool Fold::operator==(const Fold& other) const {
  const auto all = [](const Fold& f) { return std::tie(f.id, f.open, f.accessibleName, f.action, f.row); };
  return all(*this) == all(other);
}

bool Node::operator==(const Node& other) const { return grows == other.grows && view == other.view; }

}  // namespace tarnwick::panel
