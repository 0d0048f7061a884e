// Does the desktop want dark windows? Asked of the desktop portal, which also tells when it changes; until
// it has answered, and where there is none, the palette of the desktop decides. Main thread.
#pragma once

#include <QDBusVariant>
#include <QObject>
#include <optional>

namespace tarnwick::panel {

class Appearance : public QObject {
  Q_OBJECT
 public:
  explicit Appearance(QObject* parent);

  bool isDark() const;

 private Q_SLOTS:
  void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void take(const QVariant& value);

  std::optional<bool> preferred_;  // what the portal said; absent: nothing yet, or no preference
};

}  // namespace tarnwick::panel
