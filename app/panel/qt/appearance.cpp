#include "app/panel/qt/appearance.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QEvent>
#include <QMap>
#include <QScreen>
#include <QStringList>
#include <QStyleHints>
#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick::panel {
namespace {

using Settings = QMap<QString, QVariantMap>;  // by group and key

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalObject = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString interfaceGroup = QStringLiteral("org.gnome.desktop.interface");
const QString assistanceGroup = QStringLiteral("org.gnome.desktop.a11y.interface");

constexpr double plainResolution = 96;  // dots per inch

// 0: no preference, 1: dark, 2: light.
std::optional<bool> darkOf(const QVariant& scheme) {
  const unsigned number = scheme.toUInt();
  return number == 1 || number == 2 ? std::optional(number == 1) : std::nullopt;
}

// Three numbers from 0 to 1; anything else means that there is none.
std::optional<QColor> colourOf(const QVariant& value) {
  if (value.metaType() != QMetaType::fromType<QDBusArgument>()) return std::nullopt;
  const auto argument = value.value<QDBusArgument>();
  if (argument.currentSignature() != QLatin1String("(ddd)")) return std::nullopt;
  std::array<double, 3> parts{};
  argument.beginStructure();
  for (double& part : parts) argument >> part;
  argument.endStructure();
  if (!std::ranges::all_of(parts, [](double part) { return part >= 0 && part <= 1; })) return std::nullopt;
  return QColor::fromRgbF(static_cast<float>(parts[0]), static_cast<float>(parts[1]),
                          static_cast<float>(parts[2]));
}

std::optional<bool> darkOfToolkit() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  const Qt::ColorScheme scheme = QGuiApplication::styleHints()->colorScheme();
  if (scheme != Qt::ColorScheme::Unknown) return scheme == Qt::ColorScheme::Dark;
#endif
  return std::nullopt;
}

// `told`: the desktop's own factor. Under X it also reaches the resolution of the fonts, which the toolkit
// turns into the scale of the screen: what is in there already must not count twice.
double textScale(double told) {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return 1;
  if (QGuiApplication::platformName() == QLatin1String("xcb")) told /= screen->devicePixelRatio();
  const double scale = std::max(told, screen->logicalDotsPerInchY() / plainResolution);
  return scale >= 1 ? std::min(scale, 2.0) : 1;
}

}  // namespace

Appearance::Appearance(QObject* parent) : QObject(parent) {
  QCoreApplication::instance()->installEventFilter(this);
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  connect(QGuiApplication::styleHints(), &QStyleHints::colorSchemeChanged, this, &Appearance::compare);
#endif
  for (const QScreen* screen : QGuiApplication::screens())
    connect(screen, &QScreen::logicalDotsPerInchChanged, this, &Appearance::compare);
  last_ = look();
  askPortal();
}

void Appearance::askPortal() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  qRegisterMetaType<QDBusVariant>("QDBusVariant");  // the signal is not delivered without
  qDBusRegisterMetaType<Settings>();
  bus.connect(portalService, portalObject, portalInterface, QStringLiteral("SettingChanged"), this,
              SLOT(settingChanged(QString, QString, QDBusVariant)));
  QDBusMessage question =
      QDBusMessage::createMethodCall(portalService, portalObject, portalInterface, QStringLiteral("ReadAll"));
  question << QStringList{appearanceGroup, interfaceGroup, assistanceGroup};
  auto* waiting = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(waiting, &QDBusPendingCallWatcher::finished, this, [this, waiting] {
    const QDBusPendingReply<Settings> reply = *waiting;
    const Settings settings = reply.isError() ? Settings() : reply.value();
    for (auto group = settings.begin(); group != settings.end(); ++group) {
      for (auto key = group->begin(); key != group->end(); ++key) take(group.key(), key.key(), key.value());
    }
    compare();
    waiting->deleteLater();
  });
}

Look Appearance::look() const {
  const bool darkPalette = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
  const std::optional<bool> toolkit = darkOfToolkit();
  return {.dark = toolkit ? *toolkit : told_.dark.value_or(darkPalette),
          .highContrast = told_.contrast || told_.assistiveContrast,
          .accent = told_.accent,
          .scale = textScale(told_.textScale)};
}

// Where there is no portal, a desktop that turns dark still changes the palette.
bool Appearance::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange) compare();
  return QObject::eventFilter(watched, event);
}

void Appearance::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  take(group, key, value.variant());
  compare();
}

void Appearance::compare() {
  const Look now = look();
  if (std::exchange(last_, now) != now) Q_EMIT changed();
}

void Appearance::take(const QString& group, const QString& key, const QVariant& value) {
  const auto is = [&](const QString& wantedGroup, const char* wantedKey) {
    return group == wantedGroup && key == QLatin1String(wantedKey);
  };
  if (is(appearanceGroup, "color-scheme")) {
    told_.dark = darkOf(value);
  } else if (is(appearanceGroup, "contrast")) {
    told_.contrast = value.toUInt() == 1;
  } else if (is(appearanceGroup, "accent-color")) {
    told_.accent = colourOf(value);
  } else if (is(interfaceGroup, "text-scaling-factor")) {
    told_.textScale = value.toDouble();
  } else if (is(assistanceGroup, "high-contrast")) {
    told_.assistiveContrast = value.toBool();
  }
}

}  // namespace tarnwick::panel
