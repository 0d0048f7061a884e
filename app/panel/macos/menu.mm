#import "app/panel/macos/menu.h"

#include "system/macos/foundation_text.h"

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

}  // namespace

NSMenu* makeMenu(const std::vector<MenuItem>& items, const Perform& perform) {
  NSMenu* menu = [[NSMenu alloc] initWithTitle:@""];
  menu.autoenablesItems = NO;
  for (const MenuItem& item : items) [menu addItem:makeItem(item, perform)];
  return menu;
}

}  // namespace tarnwick::panel
