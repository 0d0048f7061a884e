// What the desktop wants of the panel's look, now and when it changes. The toolkit is asked first, then the
// desktop portal, which answers later and also tells changes; until then, and where there is none, the
// desktop's palette and font resolution decide. What is wrongly told counts as not told. Main thread.
#pragma once

#include <QDBusVariant>
#include <QObject>
#include <optional>

#include "app/panel/qt/theme.h"

namespace tarnwick::panel {

class Appearance : public QObject {
  Q_OBJECT
 public:
  // After the QApplication was made.
  explicit Appearance(QObject* parent);

  // Its scale lies between 1 and 2.
  Look look() const;

 Q_SIGNALS:
  void changed();  // look() gives something else than before

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private Q_SLOTS:
  void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
  void compare();

 private:
  // What the portal said; absent: nothing, or no preference.
  struct Told {
    std::optional<bool> dark;
    bool contrast = false;
    bool assistiveContrast = false;  // the same from the settings for assistance
    std::optional<QColor> accent;
    double textScale = 1;
  };

  void askPortal();
  void take(const QString& group, const QString& key, const QVariant& value);

  Told told_;
  Look last_;  // as it was told to whoever listens
};

}  // namespace tarnwick::panel
