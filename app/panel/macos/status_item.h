// The icon in the menu bar, with a menu of its own. Main thread.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <vector>

#import "app/panel/macos/control_views.h"
#import "app/panel/macos/painter.h"

namespace tarnwick::panel {

// In the menu bar as long as it lives; after the application has launched.
class StatusItem {
 public:
  struct Handlers {
    std::function<void()> clicked;                 // once for a click or a double click
    std::function<std::vector<MenuItem>()> lines;  // of the menu under the other button, asked when it opens
    Perform perform;                               // one of them was chosen
  };

  explicit StatusItem(Handlers handlers);
  ~StatusItem();
  StatusItem(const StatusItem&) = delete;
  StatusItem& operator=(const StatusItem&) = delete;

  NSView* button() const { return item_.button; }

 private:
  Handlers handlers_;
  NSStatusItem* item_;
  Target* target_;
  NSMenu* menu_ = nil;  // the last one: it may tell its choice after it has gone
};

}  // namespace tarnwick::panel
