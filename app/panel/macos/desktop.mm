#import "app/panel/macos/desktop.h"

#include <memory>
#include <utility>

#include "app/remedies/macos/applications.h"

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

}  // namespace

bool findDisplay() { return isInDesktopSession(); }

StatusItem::StatusItem(std::function<void()> clicked)
    : item_([NSStatusBar.systemStatusBar statusItemWithLength:NSSquareStatusItemLength]) {
  const auto shared = std::make_shared<const std::function<void()>>(std::move(clicked));
  target_ = [Target targetWithAction:^{
    (*shared)();
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
}

StatusItem::~StatusItem() { [NSStatusBar.systemStatusBar removeStatusItem:item_]; }

}  // namespace tarnwick::panel
