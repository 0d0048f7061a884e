#import "app/panel/macos/status_item.h"

#include <utility>

#import "app/panel/macos/menu.h"

namespace tarnwick::panel {
namespace {

// The first of them that this release of the system has; nil: none.
NSImage* iconImage() {
  for (NSString* name in @[ @"gauge.with.dots.needle.67percent", @"gauge.high", @"gauge" ]) {
    NSImage* image = [NSImage imageWithSystemSymbolName:name accessibilityDescription:@"Tarnwick"];
    if (image == nil) continue;
    [image setTemplate:YES];  // drawn in the colour of the menu bar, whatever that is
    return image;
  }
  return nil;
}

bool wantsMenu(NSEvent* event) {
  if (event == nil) return false;
  return event.type == NSEventTypeRightMouseUp ||
         (event.type == NSEventTypeLeftMouseUp && (event.modifierFlags & NSEventModifierFlagControl) != 0);
}

bool isSecondOfTwo(NSEvent* event) {
  return event != nil && event.type == NSEventTypeLeftMouseUp && event.clickCount > 1;
}

// Where and as the system shows the menu of an item that has one; this one has it only for that while.
void showMenu(NSStatusItem* item, NSMenu* menu) {
  item.menu = menu;
  [item.button performClick:nil];
  item.menu = nil;
}

}  // namespace

StatusItem::StatusItem(Handlers handlers)
    : handlers_(std::move(handlers)),
      item_([NSStatusBar.systemStatusBar statusItemWithLength:NSSquareStatusItemLength]) {
  target_ = [Target targetWithAction:^{
    NSEvent* event = NSApp.currentEvent;
    if (wantsMenu(event)) {
      menu_ = makeMenu(handlers_.lines(), handlers_.perform);
      showMenu(item_, menu_);
    } else if (!isSecondOfTwo(event)) {
      handlers_.clicked();
    }
  }];
  item_.button.image = iconImage();
  if (item_.button.image == nil) {
    item_.length = NSVariableStatusItemLength;
    item_.button.title = @"Tarnwick";
  }
  item_.button.toolTip = @"Tarnwick";
  item_.button.accessibilityLabel = @"Tarnwick";
  item_.button.target = target_;
  item_.button.action = @selector(fire);
  [item_.button sendActionOn:NSEventMaskLeftMouseUp | NSEventMaskRightMouseUp];
}

StatusItem::~StatusItem() { [NSStatusBar.systemStatusBar removeStatusItem:item_]; }

}  // namespace tarnwick::panel
