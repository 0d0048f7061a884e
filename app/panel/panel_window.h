// What the panel needs from a toolkit and from the desktop. The controller decides; these only do.
// Main thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

class PanelWindow {
 public:
  virtual ~PanelWindow() = default;

  virtual bool isVisible() const = 0;

  // Brings the window to the front and gives it the keyboard.
  virtual void open() = 0;

  // Takes the window away and drops its views.
  virtual void close() = 0;

  // Replaces the views and fits the window to them, in one movement when `animated`. May be called from a
  // click on one of the views that it replaces.
  virtual void show(const Node& content, bool animated) = 0;

  // Shows another text in the label of that id, on one line; nothing happens when there is none.
  virtual void setText(const std::string& id, const std::string& text) = 0;

  // Calls `task` once, on the main loop, after so many seconds. A later call takes the place of an earlier
  // one, and closing the window forgets it.
  virtual void callAfter(double seconds, std::function<void()> task) = 0;

  virtual void openMenu(const std::vector<MenuItem>& items) = 0;

  // Height of the panel's screen without bars, in points; absent when there is no screen.
  virtual std::optional<double> visibleScreenHeight() const = 0;

  // Ends the application.
  virtual void quit() = 0;
};

}  // namespace tarnwick::panel
