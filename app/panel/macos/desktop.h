// What the desktop has for the panel: a display, and an icon in the menu bar. Main thread.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

#import "app/panel/macos/control_views.h"

namespace tarnwick::panel {

// Can this process show anything? Asked before the application object is made, which would end the process.
bool findDisplay();

// The icon, in the menu bar as long as it lives; after the application has launched.
class StatusItem {
 public:
  explicit StatusItem(std::function<void()> clicked);
  ~StatusItem();
  StatusItem(const StatusItem&) = delete;
  StatusItem& operator=(const StatusItem&) = delete;

  NSView* button() const { return item_.button; }

 private:
  NSStatusItem* item_;
  Target* target_;
};

}  // namespace tarnwick::panel
