// The panel's window on the screen: drops down under the status item. Main thread.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <optional>

#import "app/panel/macos/painter.h"
#import "app/panel/macos/popup_window.h"
#include "app/panel/panel_window.h"

namespace tarnwick::panel {

class AppKitPanel final : public PanelWindow {
 public:
  struct Handlers {
    Perform perform;                  // gets the clicks
    std::function<void()> focusLeft;  // another window took the keyboard from the open panel
    std::function<void()> dismissed;  // the user wants the open panel gone
  };

  // `icon` is the status item's button, asked for whenever the panel is placed; nil: there is none.
  AppKitPanel(std::function<NSView*()> icon, Handlers handlers);
  ~AppKitPanel() override;
  AppKitPanel(const AppKitPanel&) = delete;
  AppKitPanel& operator=(const AppKitPanel&) = delete;

  bool isVisible() const override { return visible_; }
  void open() override;
  void close() override;
  void show(const Node& content, bool animated) override;
  void setText(const std::string& id, const std::string& text) override;
  void callAfter(double seconds, std::function<void()> task) override;
  void openMenu(const std::vector<MenuItem>& items) override;
  std::optional<double> visibleScreenHeight() const override;
  void quit() override;

 private:
  void replaceContent(const Node& content);
  NSRect frameFor(NSSize size) const;
  void moveTo(NSRect frame, bool animated);
  void bringToFront();

  std::function<NSView*()> icon_;
  Handlers handlers_;
  PopupWindow* window_;
  Painting content_;
  NSMenu* menu_ = nil;      // the last one: it may tell its choice after it has gone
  NSTimer* later_ = nil;    // the task that waits; nil or invalid: none
  bool visible_ = false;    // open; the window follows with its first content
  bool focusLost_ = false;  // while the panel closes because another window took the keyboard
};

}  // namespace tarnwick::panel
