// What the desktop is like: can a window be shown, are windows composited, is there a tray? Asked of the
// display server and the session bus without the toolkit, which would end the process on a wrong answer.
#pragma once

#include <QObject>
#include <memory>

namespace tarnwick::panel {

// Can the toolkit open a window here? To be asked before the QApplication is made; picks the platform.
bool prepareDisplay();

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

}  // namespace tarnwick::panel
