// The desktop's side of a tray on the session bus: the list of icons, whoever shows them, and what a user
// does to an icon there. It answers while the test's loop turns.
#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMap>
#include <QStringList>

namespace tarnwick::panel {

class NotifierHost : public QDBusVirtualObject {
 public:
  ~NotifierHost() override { leave(); }

  // Owns the list; `shows`: and somebody shows what is in it.
  bool appear(bool shows) {
    shows_ = shows;
    return bus_.registerVirtualObject(path_, this) && bus_.registerService(name_);
  }
  bool startShowing() {
    shows_ = true;
    return bus_.send(QDBusMessage::createSignal(path_, name_, "StatusNotifierHostRegistered"));
  }
  bool leave() {
    item.clear();
    bus_.unregisterObject(path_);
    return bus_.unregisterService(name_);
  }

  // Of the icon or, with the menu's words, of its menu.
  QDBusPendingCall use(const QString& method, const QVariantList& words = {0, 0}, bool menu = false) const {
    QDBusMessage message = QDBusMessage::createMethodCall(
        item, menu ? "/MenuBar" : "/StatusNotifierItem",
        menu ? "com.canonical.dbusmenu" : "org.kde.StatusNotifierItem", method);
    message.setArguments(words);
    return bus_.asyncCall(message, 5000);
  }

  // The lines of an answer to GetLayout, with their numbers; a marked one ends with “*”.
  static QList<std::pair<QString, int>> linesOf(const QDBusMessage& layout) {
    const auto read = [](const QDBusArgument& from, QVariantMap& properties, QVariantList* children) {
      int id = 0;
      from.beginStructure();
      from >> id >> properties;
      if (children != nullptr) from >> *children;
      from.endStructure();
      return id;
    };
    QVariantMap properties;
    QVariantList children;
    read(layout.arguments().value(1).value<QDBusArgument>(), properties, &children);
    QList<std::pair<QString, int>> lines;
    for (const QVariant& child : children) {
      const int id = read(child.value<QDBusArgument>(), properties, nullptr);
      lines.append(
          {properties["label"].toString() + (properties["toggle-state"].toInt() == 1 ? "*" : ""), id});
    }
    return lines;
  }

  QString introspect(const QString& /*path*/) const override {
    return "<interface name=\"" + name_ +
           "\"><property name=\"IsStatusNotifierHostRegistered\" type=\"b\" access=\"read\"/></interface>";
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() == "Get")
      return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(shows_))));
    if (message.member() != "RegisterStatusNotifierItem") return false;
    item = message.service();
    return connection.send(message.createReply());
  }

  QString item;  // the icon's name on the bus; empty: none since the list has come

 private:
  const QString name_ = "org.kde.StatusNotifierWatcher";
  const QString path_ = "/StatusNotifierWatcher";
  QDBusConnection bus_ = QDBusConnection::sessionBus();
  bool shows_ = false;
};

}  // namespace tarnwick::panel
