#import "app/panel/macos/painter.h"

#include <algorithm>
#include <vector>

#include "app/panel/arrangement.h"
#import "app/panel/macos/control_views.h"
#import "app/panel/macos/leaf_views.h"
#import "app/panel/macos/surfaces.h"
#include "sampling/tools/macos/foundation_text.h"

namespace tarnwick::panel {
namespace {

constexpr double unbounded = 4000;

NSView* emptyView(const Extent& size) {
  return [[FlippedView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
}

// The system asks only the innermost view under the pointer for its tool tip.
void explain(NSView* view, NSString* toolTip) {
  if (view.toolTip == nil) view.toolTip = toolTip;
  for (NSView* child in view.subviews) explain(child, toolTip);
}

// One walk over a tree. Every function returns a view at its final size, no wider than `width`.
class Walk {
 public:
  explicit Walk(const Perform& perform) : perform_(perform) {}

  MadeView make(const Node& node, double width) {
    return std::visit([&](const auto& view) { return makeView(view, width); }, node.view);
  }

  Painting painting(NSView* view) const { return {view, targets_, controls_, list_}; }

 private:
  MadeView makeView(const Stack& stack, double width) {
    std::vector<MadeView> children(stack.children.size());
    const Arrangement arrangement = arrange(stack, width, [&](std::size_t i, double childWidth) {
      children[i] = make(stack.children[i], childWidth);
      return children[i].size;
    });
    NSView* view = emptyView(arrangement.size);
    for (std::size_t i = 0; i < children.size(); ++i) place(children[i], arrangement.spots[i], view);
    if (!stack.toolTip.empty()) explain(view, foundationText(stack.toolTip));
    return {view, arrangement.size};
  }

  MadeView makeView(const Box& box, double width) {
    const double outer = box.width ? std::min(*box.width, width) : width;
    const double sides = box.insets.left + box.insets.right;
    const MadeView child = make(box.child.at(0), outer - sides);
    const Extent size{box.width ? outer : child.size.width + sides,
                      child.size.height + box.insets.top + box.insets.bottom};
    BoxView* view = [[BoxView alloc] initWithBox:box];
    view.frame = NSMakeRect(0, 0, size.width, size.height);
    place(child, {box.insets.left, box.insets.top}, view);
    return {view, size};
  }

  MadeView makeView(const Scroll& scroll, double width) {
    const double listWidth = std::min(scroll.width, width);
    const MadeView child = make(scroll.child.at(0), listWidth);
    NSView* document = emptyView({listWidth, child.size.height});
    place(child, {}, document);
    const double height = std::min(scroll.heightCap.value_or(child.size.height), child.size.height);
    list_ = [[ListView alloc] initWithFrame:NSMakeRect(0, 0, listWidth, height)];
    list_.documentView = document;
    return {list_, {listWidth, height}};
  }

  MadeView makeView(const Button& button, double width) {
    const MadeView made = makeButton(button, width, targetFor(button.action));
    controls_[foundationText(button.id)] = made.view;
    return made;
  }

  MadeView makeView(const Fold& fold, double width) {
    const MadeView made = makeFold(fold, make(fold.row.at(0), width), targetFor(fold.action));
    controls_[foundationText(fold.id)] = made.view;
    return made;
  }

  MadeView makeView(const Label& label, double width) { return makeLabel(label, width); }
  MadeView makeView(const Symbol& symbol, double /*width*/) { return makeSymbol(symbol); }
  MadeView makeView(const Spinner& spinner, double /*width*/) { return makeSpinner(spinner); }

  Target* targetFor(const PanelAction& action) {
    const Perform* perform = &perform_;
    const PanelAction copy = action;
    Target* target = [Target targetWithAction:^{
      (*perform)(copy);
    }];
    [targets_ addObject:target];
    return target;
  }

  const Perform& perform_;
  NSMutableArray<Target*>* targets_ = [NSMutableArray array];
  NSMutableDictionary<NSString*, NSView*>* controls_ = [NSMutableDictionary dictionary];
  NSScrollView* list_ = nil;
};

}  // namespace

Painting paint(const Node& node, const Perform& perform) {
  Walk walk(perform);
  const MadeView made = walk.make(node, unbounded);
  made.view.translatesAutoresizingMaskIntoConstraints = NO;
  [NSLayoutConstraint activateConstraints:@[
    [made.view.widthAnchor constraintEqualToConstant:made.size.width],
    [made.view.heightAnchor constraintEqualToConstant:made.size.height]
  ]];
  return walk.painting(made.view);
}

}  // namespace tarnwick::panel
