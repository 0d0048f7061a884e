// What the desktop has for the panel: a display, a compositor and a tray. They are asked of the display
// server and the session bus without the toolkit, which would end the process on a wrong answer. Main thread.
#pragma once

#include <QObject>
#include <memory>
#include <optional>

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

// Can the toolkit open a window here? To be asked before the QApplication is made; picks the platform.
bool findDisplay();

// Do windows have transparent corners and shadows?
bool isComposited();

// Do windows come where the program puts them? Under Wayland they do not.
bool placesWindows();

// Is the pointer where the toolkit says also over windows of others? Not under Wayland, its own X included.
bool tellsPointer();

// Tells about the tray. The toolkit settles for one kind of tray when the first icon is made, so the icon
// must wait until there is one.
class TrayHost : public QObject {
  Q_OBJECT
 public:
  explicit TrayHost(QObject* parent);
  ~TrayHost() override;

  // Would an icon be seen now? Asks others, for half a second at most.
  bool isPresent() const;

  // Does the session bus have a list of icons, be there one who shows them or not yet?
  bool isComing() const;

  // Which way an X tray puts its icons; absent: it does not say.
  std::optional<Stack::Direction> bar() const;

 Q_SIGNALS:
  // A tray may be there now. May be told more than once.
  void appeared();

 private:
  class ManagerFilter;
  std::unique_ptr<ManagerFilter> filter_;
};

}  // namespace tarnwick::panel
