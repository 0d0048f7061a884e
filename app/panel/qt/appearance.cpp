#include "app/panel/qt/appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QPalette>

namespace tarnwick::panel {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString object = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interfaceName = QStringLiteral("org.freedesktop.portal.Settings");
const QString group = QStringLiteral("org.freedesktop.appearance");
const QString key = QStringLiteral("color-scheme");

}  // namespace

Appearance::Appearance(QObject* parent) : QObject(parent) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.connect(service, object, interfaceName, QStringLiteral("SettingChanged"), this,
              SLOT(settingChanged(QString, QString, QDBusVariant)));
  QDBusMessage question =
      QDBusMessage::createMethodCall(service, object, interfaceName, QStringLiteral("Read"));
  question << group << key;
  auto* waiting = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(waiting, &QDBusPendingCallWatcher::finished, this, [this, waiting] {
    const QDBusPendingReply<QVariant> reply = *waiting;
    if (!reply.isError()) take(reply.value());
    waiting->deleteLater();
  });
}

bool Appearance::isDark() const {
  return preferred_.value_or(QGuiApplication::palette().color(QPalette::Window).lightness() < 128);
}

void Appearance::settingChanged(const QString& changedGroup, const QString& changedKey,
                                const QDBusVariant& value) {
  if (changedGroup == group && changedKey == key) take(value.variant());
}

// 0: no preference, 1: dark, 2: light. The answer to a question is wrapped once more than a change.
void Appearance::take(const QVariant& value) {
  const QVariant plain = value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
  const unsigned scheme = plain.toUInt();
  preferred_ = scheme == 1 ? std::optional(true) : scheme == 2 ? std::optional(false) : std::nullopt;
}

}  // namespace tarnwick::panel
