// What the desktop has for the panel: a display, a compositor, a tray and the icon in it. The first three are
// asked of the display server and the session bus without the toolkit, which would end the process on a wrong
// answer. Main thread.
#pragma once

#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>

namespace tarnwick::panel {

// Can the toolkit open a window here? To be asked before the QApplication is made; picks the platform.
bool findDisplay();

// Do windows have transparent corners and shadows?
bool isComposited();

// Tells about the tray. The toolkit settles for one kind of tray when the first icon is made, so the icon
// must wait until there is one.
class TrayHost : public QObject {
  Q_OBJECT
 public:
  explicit TrayHost(QObject* parent);
  ~TrayHost() override;

  bool isPresent() const;

 Q_SIGNALS:
  // A tray may be there now. May be told more than once.
  void appeared();

 private:
  class ManagerFilter;
  std::unique_ptr<ManagerFilter> filter_;
};

// The icon, in the tray as long as it lives.
class StatusItem {
 public:
  explicit StatusItem(std::function<void()> clicked);

  // On the screen; empty: this tray does not say.
  QRect place() const { return icon_.geometry(); }

 private:
  QSystemTrayIcon icon_;
};

}  // namespace tarnwick::panel
