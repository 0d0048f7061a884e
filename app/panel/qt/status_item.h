// The icon in the tray, with a menu of its own. Main thread.
#pragma once

#include <QElapsedTimer>
#include <QIcon>
#include <QMenu>
#include <QRect>
#include <QSystemTrayIcon>
#include <functional>
#include <vector>

#include "app/panel/qt/painter.h"

namespace tarnwick::panel {

// The program's sign, in a colour that can be told from light and from dark bars.
QIcon iconImage();

// The icon, in the tray as long as it lives, and whenever that tray comes back.
class StatusItem {
 public:
  struct Handlers {
    std::function<void()> clicked;                 // once for a click or a double click, also with the wheel
    std::function<void()> opened;                  // the menu's first line; some desktops have only the menu
    std::function<std::vector<MenuItem>()> lines;  // of the panel's menu, asked whenever the icon's opens
    Perform perform;                               // one of them was chosen
  };

  explicit StatusItem(Handlers handlers);

  // On the screen; empty: this tray does not say.
  QRect place() const { return icon_.geometry(); }

  // May a click on it still become a double click?
  bool wasJustClicked() const;

 private:
  void makeMenu();
  void activate(QSystemTrayIcon::ActivationReason reason);
  void showMenu();

  Handlers handlers_;
  QMenu menu_;
  QSystemTrayIcon icon_;
  QElapsedTimer clickedAt_;  // not valid: never
};

}  // namespace tarnwick::panel
