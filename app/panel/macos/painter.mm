#import "app/panel/macos/painter.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "app/panel/arrangement.h"
#import "app/panel/macos/symbol_views.h"
#import "app/panel/macos/text_views.h"
#import "app/panel/macos/theme.h"
#include "system/macos/foundation_text.h"

// The plain surfaces that the panel is laid out on. Their colours follow the appearance: each is looked up
// when the surface is drawn.

// A view whose content grows downwards from the top.
__attribute__((objc_runtime_name("TarnwickFlippedView")))
@interface FlippedView : NSView
@end

@implementation FlippedView

- (BOOL)isFlipped {
  return YES;
}

@end

// A rounded surface in a transparent colour.
__attribute__((objc_runtime_name("TarnwickBoxView")))
@interface BoxView : FlippedView

- (instancetype)initWithBox:(const tarnwick::panel::Box&)box;

@end

@implementation BoxView {
  tarnwick::panel::ColourRole _colour;
  CGFloat _opacity;
  std::optional<double> _cornerRadius;
}

- (instancetype)initWithBox:(const tarnwick::panel::Box&)box {
  self = [super initWithFrame:NSZeroRect];
  if (self != nil) {
    _colour = box.background;
    _opacity = box.opacity;
    _cornerRadius = box.cornerRadius;
  }
  return self;
}

- (void)drawRect:(NSRect)__unused dirtyRect {
  const CGFloat radius = _cornerRadius.value_or(NSHeight(self.bounds) / 2);
  [[tarnwick::panel::Theme::colour(_colour) colorWithAlphaComponent:_opacity] setFill];
  [[NSBezierPath bezierPathWithRoundedRect:self.bounds xRadius:radius yRadius:radius] fill];
}

@end

// Scrolls vertically. Its scroller lies over the list and hides itself, also where the user's scrollers
// otherwise take their own room: the list would be wider than what is left.
__attribute__((objc_runtime_name("TarnwickListView")))
@interface ListView : NSScrollView
@end

@implementation ListView

- (instancetype)initWithFrame:(NSRect)frame {
  self = [super initWithFrame:frame];
  if (self != nil) {
    self.drawsBackground = NO;
    self.borderType = NSNoBorder;
    self.automaticallyAdjustsContentInsets = NO;
    self.hasVerticalScroller = YES;
    self.autohidesScrollers = YES;
    self.scrollerStyle = NSScrollerStyleOverlay;
    self.horizontalScrollElasticity = NSScrollElasticityNone;
  }
  return self;
}

// The system sets it when the user's choice changes.
- (void)setScrollerStyle:(NSScrollerStyle)__unused style {
  [super setScrollerStyle:NSScrollerStyleOverlay];
}

@end

namespace tarnwick::panel {
namespace {

constexpr double unboundedWidth = 4000;

NSView* emptyView(const Extent& size) {
  return [[FlippedView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
}

// The system asks only the innermost view under the pointer for its tool tip.
void explain(NSView* view, NSString* toolTip) {
  if (view.toolTip == nil) view.toolTip = toolTip;
  for (NSView* child in view.subviews) explain(child, toolTip);
}

// A group without a name stays silent.
void speak(NSView* view, const Spoken& spoken) {
  if (spoken.name.empty()) return;
  view.accessibilityElement = YES;
  view.accessibilityRole = NSAccessibilityGroupRole;
  view.accessibilityLabel = foundationText(spoken.name);
  if (!spoken.description.empty()) view.accessibilityHelp = foundationText(spoken.description);
  if (!spoken.announced) return;
  NSAccessibilityPostNotificationWithUserInfo(
      NSApp, NSAccessibilityAnnouncementRequestedNotification, @{
        NSAccessibilityAnnouncementKey : foundationText(spoken.name),
        NSAccessibilityPriorityKey : @(NSAccessibilityPriorityMedium)
      });
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
    speak(view, stack.spoken);
    return {view, arrangement.size};
  }

  MadeView makeView(const Box& box, double width) {
    const double outer = box.width ? std::min(*box.width, width) : width;
    const double sides = box.insets.left + box.insets.right;
    const MadeView child = make(box.child.at(0), std::max(box.widest.value_or(outer), outer) - sides);
    const double fitting = child.size.width + sides;
    const Extent size{box.width ? std::max(outer, fitting) : fitting,
                      child.size.height + box.insets.top + box.insets.bottom};
    BoxView* view = [[BoxView alloc] initWithBox:box];
    view.frame = NSMakeRect(0, 0, size.width, size.height);
    speak(view, box.spoken);
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
    list_.accessibilityLabel = foundationText(scroll.accessibleName);
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

  MadeView makeView(const Label& label, double width) {
    const MadeView made = makeLabel(label, width);
    if (!label.id.empty()) controls_[foundationText(label.id)] = made.view;
    return made;
  }
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
  const MadeView made = walk.make(node, unboundedWidth);
  made.view.translatesAutoresizingMaskIntoConstraints = NO;
  [NSLayoutConstraint activateConstraints:@[
    [made.view.widthAnchor constraintEqualToConstant:made.size.width],
    [made.view.heightAnchor constraintEqualToConstant:made.size.height]
  ]];
  return walk.painting(made.view);
}

}  // namespace tarnwick::panel
