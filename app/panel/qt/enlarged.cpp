#include "app/panel/qt/enlarged.h"

#include <utility>

namespace tarnwick::panel {
namespace {

void enlarge(double& length, double factor) { length *= factor; }

void enlarge(std::optional<double>& length, double factor) {
  if (length) *length *= factor;
}

void enlarge(Insets& insets, double factor) {
  for (double* length : {&insets.top, &insets.left, &insets.bottom, &insets.right}) *length *= factor;
}

void enlarge(std::vector<Node>& nodes, double factor) {
  for (Node& node : nodes) node = enlarged(std::move(node), factor);
}

}  // namespace

Node enlarged(Node node, double factor) {
  const auto enlargeView = [factor](auto& view) {
    if constexpr (requires { view.spacing; }) enlarge(view.spacing, factor);
    if constexpr (requires { view.insets; }) enlarge(view.insets, factor);
    if constexpr (requires { view.width; }) enlarge(view.width, factor);
    if constexpr (requires { view.widest; }) enlarge(view.widest, factor);
    if constexpr (requires { view.wrapWidth; }) enlarge(view.wrapWidth, factor);
    if constexpr (requires { view.cornerRadius; }) enlarge(view.cornerRadius, factor);
    if constexpr (requires { view.heightCap; }) enlarge(view.heightCap, factor);
    if constexpr (requires { view.size; }) enlarge(view.size, factor);
    if constexpr (requires { view.frame; }) enlarge(view.frame, factor);
    if constexpr (requires { view.children; }) enlarge(view.children, factor);
    if constexpr (requires { view.child; }) enlarge(view.child, factor);
    if constexpr (requires { view.row; }) enlarge(view.row, factor);
  };
  std::visit(enlargeView, node.view);
  return node;
}

}  // namespace tarnwick::panel
