#include "app/panel/qt/desktop.h"

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QDir>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace tarnwick::panel {
namespace {

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";  // also its interface
constexpr const char* trayPrefix = "_NET_SYSTEM_TRAY_S";              // the number of the screen follows
constexpr const char* watcherPath = "/StatusNotifierWatcher";
constexpr int watcherMilliseconds = 500;

template <class T>
using XReply = std::unique_ptr<T, decltype(&std::free)>;

struct CloseX {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

// One short connection of its own to the X server; null when there is none.
class XServer {
 public:
  XServer() : connection_(xcb_connect(nullptr, &screen_)) {}

  bool answers() const { return xcb_connection_has_error(connection_.get()) == 0; }

  xcb_atom_t atom(const QByteArray& name) const {
    const auto cookie =
        xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_.get(), cookie, nullptr),
                                                &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }

  // Whose is the selection of that name for this screen?
  xcb_window_t ownerOf(const char* prefix) const {
    if (!answers()) return XCB_WINDOW_NONE;
    const auto cookie =
        xcb_get_selection_owner(connection_.get(), atom(prefix + QByteArray::number(screen_)));
    const XReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection_.get(), cookie, nullptr), &std::free);
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
  }

  std::optional<std::uint32_t> number(xcb_window_t window, const char* property) const {
    const auto cookie =
        xcb_get_property(connection_.get(), 0, window, atom(property), XCB_ATOM_CARDINAL, 0, 1);
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_.get(), cookie, nullptr),
                                                 &std::free);
    if (!reply || reply->format != 32 || reply->value_len != 1) return std::nullopt;
    std::uint32_t value = 0;
    std::memcpy(&value, xcb_get_property_value(reply.get()), sizeof value);
    return value;
  }

 private:
  int screen_ = 0;
  std::unique_ptr<xcb_connection_t, CloseX> connection_;
};

bool hasWaylandPlugin() {
  const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
  return !plugins.entryList({QStringLiteral("libqwayland*.so")}, QDir::Files).isEmpty();
}

bool isUnderX() { return QGuiApplication::platformName() == QLatin1String("xcb"); }

}  // namespace

bool findDisplay() {
  if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) return true;  // whoever set it knows
  // Only under X, Wayland's own X included, may a program place its window beside the icon.
  if (qEnvironmentVariableIsSet("DISPLAY") && XServer().answers()) return qputenv("QT_QPA_PLATFORM", "xcb");
  if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY") && hasWaylandPlugin())
    return qputenv("QT_QPA_PLATFORM", "wayland");
  return false;
}

bool placesWindows() { return !QGuiApplication::platformName().startsWith(QLatin1String("wayland")); }

bool tellsPointer() { return placesWindows() && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY"); }

bool isComposited() { return !isUnderX() || XServer().ownerOf("_NET_WM_CM_S") != XCB_WINDOW_NONE; }

// An X tray that starts tells every window of the root that listens; the toolkit already does.
class TrayHost::ManagerFilter : public QAbstractNativeEventFilter {
 public:
  explicit ManagerFilter(TrayHost& host) : host_(host), manager_(XServer().atom("MANAGER")) {
    QCoreApplication::instance()->installNativeEventFilter(this);
  }

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) override {
    if (type != "xcb_generic_event_t") return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE) return false;
    if (static_cast<const xcb_client_message_event_t*>(message)->type == manager_) Q_EMIT host_.appeared();
    return false;
  }

 private:
  TrayHost& host_;
  xcb_atom_t manager_;
};

TrayHost::TrayHost(QObject* parent) : QObject(parent) {
  if (isUnderX()) filter_ = std::make_unique<ManagerFilter>(*this);
  QDBusConnection bus = QDBusConnection::sessionBus();
  auto* watcher = new QDBusServiceWatcher(QLatin1String(watcherName), bus,
                                          QDBusServiceWatcher::WatchForRegistration, this);
  connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &TrayHost::appeared);
  bus.connect(QLatin1String(watcherName), QLatin1String(watcherPath), QLatin1String(watcherName),
              QStringLiteral("StatusNotifierHostRegistered"), this, SIGNAL(appeared()));
}

TrayHost::~TrayHost() = default;

bool TrayHost::isComing() const {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  return bus.isConnected() && bus.interface()->isServiceRegistered(QLatin1String(watcherName));
}

std::optional<Stack::Direction> TrayHost::bar() const {
  if (!isUnderX()) return std::nullopt;
  const XServer server;
  const xcb_window_t tray = server.ownerOf(trayPrefix);
  if (tray == XCB_WINDOW_NONE) return std::nullopt;
  const std::optional<std::uint32_t> direction = server.number(tray, "_NET_SYSTEM_TRAY_ORIENTATION");
  if (!direction) return std::nullopt;
  return *direction == 0 ? Stack::Direction::horizontal : Stack::Direction::vertical;
}

// The watcher of the session bus keeps a list for those who show icons; it is of use only when there is one.
bool TrayHost::isPresent() const {
  if (isUnderX() && XServer().ownerOf(trayPrefix) != XCB_WINDOW_NONE) return true;
  if (!isComing()) return false;
  QDBusMessage question = QDBusMessage::createMethodCall(
      QLatin1String(watcherName), QLatin1String(watcherPath),
      QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  question << QLatin1String(watcherName) << QStringLiteral("IsStatusNotifierHostRegistered");
  const QDBusReply<QDBusVariant> answer =
      QDBusConnection::sessionBus().call(question, QDBus::Block, watcherMilliseconds);
  return answer.isValid() && answer.value().variant().toBool();
}

}  // namespace tarnwick::panel
