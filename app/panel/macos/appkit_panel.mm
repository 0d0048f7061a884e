#import "app/panel/macos/appkit_panel.h"

#include <utility>

#import "app/panel/macos/panel_menu.h"
#include "app/panel/panel_place.h"

namespace tarnwick::panel {
namespace {

Area areaOf(NSRect rect) { return {NSMinX(rect), NSMinY(rect), NSWidth(rect), NSHeight(rect)}; }

// What is replaced may be the button that the user holds down right now, or whose click led here. The loop
// runs in its default mode only when no click, menu or scroll is under way.
void keepUntilIdle(const Painting& painting) {
  NSView* view = painting.view;
  NSArray<Target*>* targets = painting.targets;
  [NSRunLoop.mainRunLoop performInModes:@[ NSDefaultRunLoopMode ]
                                  block:^{
                                    (void)view;
                                    (void)targets;
                                  }];
}

void pinToTopLeading(NSView* view, NSView* parent) {
  [NSLayoutConstraint activateConstraints:@[
    [view.leadingAnchor constraintEqualToAnchor:parent.leadingAnchor],
    [view.topAnchor constraintEqualToAnchor:parent.topAnchor]
  ]];
}

// Absent: no control of the panel has the keyboard.
NSString* focusedControl(NSWindow* window, const Painting& painting) {
  NSResponder* focused = window.firstResponder;
  for (NSString* name in painting.controls) {
    if (painting.controls[name] == focused) return name;
  }
  return nil;
}

}  // namespace

AppKitPanel::AppKitPanel(std::function<NSView*()> button, Handlers handlers)
    : button_(std::move(button)), handlers_(std::move(handlers)), panel_([Panel makePanel]) {
  panel_.focusLeft = ^{
    if (!visible_) return;
    focusLost_ = true;
    handlers_.focusLeft();
    focusLost_ = false;
  };
  panel_.dismissed = ^{
    if (visible_) handlers_.dismissed();
  };
  panel_.quit = ^{
    handlers_.perform(Quit{});
  };
}

AppKitPanel::~AppKitPanel() {
  panel_.focusLeft = nil;
  panel_.dismissed = nil;
  panel_.quit = nil;
  [panel_ orderOut:nil];
}

void AppKitPanel::open() {
  visible_ = true;
  if (panel_.visible) bringToFront();
}

// Taking the window away takes the keyboard from it, which leads here once more.
void AppKitPanel::close() {
  if (!std::exchange(visible_, false)) return;
  [panel_ orderOut:nil];
  panel_.contentView.subviews = @[];
  keepUntilIdle(std::exchange(content_, {}));
  // An application without a window would keep the keyboard from the one that the user was in.
  if (!focusLost_) [NSApp hide:nil];
}

void AppKitPanel::show(const Node& content, bool animated) {
  replaceContent(content);
  moveTo(frameFor(content_.view.fittingSize), animated);
  if (!panel_.visible) bringToFront();
}

// The keyboard and the list stay where they were.
void AppKitPanel::replaceContent(const Node& content) {
  const Painting before = content_;
  NSString* focused = focusedControl(panel_, before);
  const NSPoint scrolled = before.list == nil ? NSZeroPoint : before.list.documentVisibleRect.origin;

  [panel_.effectiveAppearance performAsCurrentDrawingAppearance:^{
    content_ = paint(content, handlers_.perform);
  }];
  NSView* surface = panel_.contentView;
  surface.subviews = @[ content_.view ];
  pinToTopLeading(content_.view, surface);
  keepUntilIdle(before);

  [surface layoutSubtreeIfNeeded];
  [content_.list.documentView scrollPoint:scrolled];
  if (focused != nil) [panel_ makeFirstResponder:content_.controls[focused]];
}

NSRect AppKitPanel::frameFor(NSSize size) const {
  NSView* button = button_();
  NSScreen* screen = button.window.screen == nil ? NSScreen.mainScreen : button.window.screen;
  const NSRect visible = screen == nil ? NSMakeRect(0, 0, size.width, size.height) : screen.visibleFrame;
  // Without a status item, under the right end of the menu bar.
  NSRect icon = NSMakeRect(NSMaxX(visible), NSMaxY(visible), 0, 0);
  if (button.window != nil)
    icon = [button.window convertRectToScreen:[button convertRect:button.bounds toView:nil]];
  const Spot origin = panelOrigin(areaOf(icon), {size.width, size.height}, areaOf(visible));
  return NSMakeRect(origin.x, origin.y, size.width, size.height);
}

void AppKitPanel::moveTo(NSRect frame, bool animated) {
  const bool moves =
      animated && panel_.visible && !NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
  Panel* panel = panel_;
  [NSAnimationContext
      runAnimationGroup:^(NSAnimationContext* context) {
        if (!moves) context.duration = 0;  // ends a movement that is still under way
        [[panel animator] setFrame:frame display:YES];
      }
      completionHandler:^{
        [panel invalidateShadow];  // it is of the shape that was drawn last
      }];
  if (!moves) [panel setFrame:frame display:YES];
}

void AppKitPanel::bringToFront() {
  if (NSApp.hidden) [NSApp unhideWithoutActivation];
  [NSApp activateIgnoringOtherApps:YES];
  [panel_ makeKeyAndOrderFront:nil];
}

void AppKitPanel::openMenu(const std::vector<MenuItem>& items) {
  menu_ = makeMenu(items, handlers_.perform);
  popUp(menu_, panel_.contentView, content_.controls[@"menu"]);
}

std::optional<double> AppKitPanel::visibleScreenHeight() const {
  NSScreen* screen = NSScreen.mainScreen;
  if (screen == nil) return std::nullopt;
  return NSHeight(screen.visibleFrame);
}

void AppKitPanel::quit() { [NSApp terminate:nil]; }

}  // namespace tarnwick::panel
