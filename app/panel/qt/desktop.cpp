#include "app/panel/qt/desktop.h"

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusServiceWatcher>
#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QPainter>
#include <cstdlib>
#include <utility>

#include "app/panel/qt/symbol_views.h"

namespace tarnwick::panel {
namespace {

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";

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

  // Does some program own the selection of that name for this screen?
  bool isOwned(const char* prefix) const {
    if (!answers()) return false;
    const auto cookie =
        xcb_get_selection_owner(connection_.get(), atom(prefix + QByteArray::number(screen_)));
    const XReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection_.get(), cookie, nullptr), &std::free);
    return reply && reply->owner != XCB_WINDOW_NONE;
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

// In a colour that can be told from light and from dark bars.
QIcon iconImage() {
  QIcon icon;
  for (const int side : {16, 22, 24, 32, 48, 64}) {
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawSymbol(painter, picture.rect(), "gauge.with.dots.needle.67percent", side, QColor(0x2f, 0x86, 0xe6));
    painter.end();
    icon.addPixmap(picture);
  }
  return icon;
}

}  // namespace

bool findDisplay() {
  if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) return true;  // whoever set it knows
  // Only under X, Wayland's own X included, may a program place its window beside the icon.
  if (qEnvironmentVariableIsSet("DISPLAY") && XServer().answers()) return qputenv("QT_QPA_PLATFORM", "xcb");
  if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY") && hasWaylandPlugin())
    return qputenv("QT_QPA_PLATFORM", "wayland");
  return false;
}

bool isComposited() { return !isUnderX() || XServer().isOwned("_NET_WM_CM_S"); }

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
  auto* watcher = new QDBusServiceWatcher(QLatin1String(watcherName), QDBusConnection::sessionBus(),
                                          QDBusServiceWatcher::WatchForRegistration, this);
  connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &TrayHost::appeared);
}

TrayHost::~TrayHost() = default;

bool TrayHost::isPresent() const {
  if (isUnderX() && XServer().isOwned("_NET_SYSTEM_TRAY_S")) return true;
  const QDBusConnection bus = QDBusConnection::sessionBus();
  return bus.isConnected() && bus.interface()->isServiceRegistered(QLatin1String(watcherName));
}

StatusItem::StatusItem(std::function<void()> clicked) : icon_(iconImage()) {
  icon_.setToolTip(QStringLiteral("Tarnwick"));
  QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_, std::move(clicked));
  icon_.show();
}

}  // namespace tarnwick::panel
