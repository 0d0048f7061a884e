// The icon in the menu bar. Main thread, after the application has launched.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

#import "app/panel/macos/target.h"

namespace tarnwick::panel {

// In the bar as long as it lives.
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

// Can this process show anything? Asked before the application object is made, which would end the process.
bool hasDisplay();

}  // namespace tarnwick::panel
