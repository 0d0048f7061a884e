#import "app/panel/macos/panel_menu.h"

#include "sampling/tools/macos/foundation_text.h"

namespace tarnwick::panel {
namespace {

NSMenuItem* makeItem(const MenuItem& item, const Perform& perform) {
  if (item.title.empty()) return [NSMenuItem separatorItem];
  const Perform* handler = &perform;
  const PanelAction action = item.action;
  Target* target = [Target targetWithAction:^{
    (*handler)(action);
  }];
  NSMenuItem* line = [[NSMenuItem alloc] initWithTitle:foundationText(item.title)
                                                action:@selector(fire)
                                         keyEquivalent:@""];
  line.target = target;
  line.representedObject = target;  // the line itself holds its target weakly
  line.state = item.checked ? NSControlStateValueOn : NSControlStateValueOff;
  return line;
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

}  // namespace

NSMenu* makeMenu(const std::vector<MenuItem>& items, const Perform& perform) {
  NSMenu* menu = [[NSMenu alloc] initWithTitle:@""];
  menu.autoenablesItems = NO;
  for (const MenuItem& item : items) [menu addItem:makeItem(item, perform)];
  return menu;
}

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

}  // namespace tarnwick::panel
