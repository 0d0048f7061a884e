#import "app/panel/macos/panel.h"

#include <utility>

#include "app/panel/arrangement.h"
#import "app/panel/macos/menu.h"
#include "system/macos/foundation_text.h"

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

bool isClick(NSEvent* event) {
  switch (event.type) {
    case NSEventTypeLeftMouseDown:
    case NSEventTypeLeftMouseUp:
    case NSEventTypeRightMouseDown:
    case NSEventTypeRightMouseUp:
      return true;
    default:
      return false;
  }
}

// Blocks until the user has chosen or gone elsewhere; what was chosen is performed by then or soon after. The
// menu opens where the event happened in the panel; under `button`, which may be nil, when it was no click.
void popUp(NSMenu* menu, NSView* panel, NSView* button) {
  NSEvent* event = NSApp.currentEvent;
  if (event != nil && event.window == panel.window && isClick(event)) {
    [NSMenu popUpContextMenu:menu withEvent:event forView:panel];
    return;
  }
  NSView* anchor = button == nil ? panel : button;
  const CGFloat bottom = anchor.flipped ? NSMaxY(anchor.bounds) : NSMinY(anchor.bounds);
  [menu popUpMenuPositioningItem:nil atLocation:NSMakePoint(NSMinX(anchor.bounds), bottom) inView:anchor];
}

}  // namespace

AppKitPanel::AppKitPanel(std::function<NSView*()> icon, Handlers handlers)
    : icon_(std::move(icon)), handlers_(std::move(handlers)), window_([PopupWindow makeWindow]) {
  window_.focusLeft = ^{
    if (!visible_) return;
    focusLost_ = true;
    handlers_.focusLeft();
    focusLost_ = false;
  };
  window_.dismissed = ^{
    if (visible_) handlers_.dismissed();
  };
  window_.quit = ^{
    handlers_.perform(Quit{});
  };
}

AppKitPanel::~AppKitPanel() {
  window_.focusLeft = nil;
  window_.dismissed = nil;
  window_.quit = nil;
  [later_ invalidate];
  [window_ orderOut:nil];
}

void AppKitPanel::open() {
  visible_ = true;
  if (window_.visible) bringToFront();
}

// Taking the window away takes the keyboard from it, which leads here once more.
void AppKitPanel::close() {
  if (!std::exchange(visible_, false)) return;
  [later_ invalidate];
  [window_ orderOut:nil];
  window_.contentView.subviews = @[];
  keepUntilIdle(std::exchange(content_, {}));
  // An application without a window would keep the keyboard from the one that the user was in.
  if (!focusLost_) [NSApp hide:nil];
}

void AppKitPanel::show(const Node& content, bool animated) {
  replaceContent(content);
  moveTo(frameFor(content_.view.fittingSize), animated);
  if (!window_.visible) bringToFront();
}

// The keyboard and the list stay where they were.
void AppKitPanel::replaceContent(const Node& content) {
  const Painting before = content_;
  NSString* focused = focusedControl(window_, before);
  const NSPoint scrolled = before.list == nil ? NSZeroPoint : before.list.documentVisibleRect.origin;

  [window_.effectiveAppearance performAsCurrentDrawingAppearance:^{
    content_ = paint(content, handlers_.perform);
  }];
  NSView* surface = window_.contentView;
  surface.subviews = @[ content_.view ];
  pinToTopLeading(content_.view, surface);
  keepUntilIdle(before);

  [surface layoutSubtreeIfNeeded];
  [content_.list.documentView scrollPoint:scrolled];
  if (focused != nil) [window_ makeFirstResponder:content_.controls[focused]];
}

NSRect AppKitPanel::frameFor(NSSize size) const {
  NSView* button = icon_();
  NSScreen* screen = button.window.screen == nil ? NSScreen.mainScreen : button.window.screen;
  const NSRect visible = screen == nil ? NSMakeRect(0, 0, size.width, size.height) : screen.visibleFrame;
  // Without a status item, under the right end of the menu bar.
  NSRect icon = NSMakeRect(NSMaxX(visible), NSMaxY(visible), 0, 0);
  if (button.window != nil)
    icon = [button.window convertRectToScreen:[button convertRect:button.bounds toView:nil]];
  const Spot origin = underIcon(areaOf(icon), {size.width, size.height}, areaOf(visible));
  return NSMakeRect(origin.x, origin.y, size.width, size.height);
}

void AppKitPanel::moveTo(NSRect frame, bool animated) {
  const bool moves =
      animated && window_.visible && !NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
  PopupWindow* window = window_;
  [NSAnimationContext
      runAnimationGroup:^(NSAnimationContext* context) {
        if (!moves) context.duration = 0;  // ends a movement that is still under way
        [[window animator] setFrame:frame display:YES];
      }
      completionHandler:^{
        [window invalidateShadow];  // it is of the shape that was drawn last
      }];
  if (!moves) [window setFrame:frame display:YES];
}

void AppKitPanel::bringToFront() {
  if (NSApp.hidden) [NSApp unhideWithoutActivation];
  [NSApp activateIgnoringOtherApps:YES];
  [window_ makeKeyAndOrderFront:nil];
}

void AppKitPanel::setText(const std::string& id, const std::string& text) {
  NSView* view = content_.controls[foundationText(id)];
  if (![view isKindOfClass:NSTextField.class]) return;
  NSTextField* field = static_cast<NSTextField*>(view);
  field.stringValue = foundationText(text);
  [field setFrameSize:[field.cell cellSize]];
}

void AppKitPanel::callAfter(double seconds, std::function<void()> task) {
  [later_ invalidate];
  later_ = [NSTimer timerWithTimeInterval:seconds
                                  repeats:NO
                                    block:^(NSTimer*) {
                                      task();
                                    }];
  [NSRunLoop.mainRunLoop addTimer:later_ forMode:NSRunLoopCommonModes];
}

void AppKitPanel::openMenu(const std::vector<MenuItem>& items) {
  menu_ = makeMenu(items, handlers_.perform);
  popUp(menu_, window_.contentView, content_.controls[@"menu"]);
}

std::optional<double> AppKitPanel::visibleScreenHeight() const {
  NSScreen* screen = NSScreen.mainScreen;
  if (screen == nil) return std::nullopt;
  return NSHeight(screen.visibleFrame);
}

void AppKitPanel::quit() { [NSApp terminate:nil]; }

}  // namespace tarnwick::panel
