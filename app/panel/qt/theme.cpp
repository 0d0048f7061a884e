#include "app/panel/qt/theme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QIcon>
#include <QStandardPaths>
#include <QStringList>

#include "app/panel/qt/access.h"

namespace tarnwick::panel {
namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalObject = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString schemeKey = QStringLiteral("color-scheme");

QFont interfaceFont(int pixels, QFont::Weight weight) {
  static const QStringList families{"Inter", "Cantarell", "Noto Sans", "DejaVu Sans", "Sans Serif"};
  QFont font;
  font.setFamilies(families);
  font.setPixelSize(pixels);
  font.setWeight(weight);
  // Whole-pixel glyph widths would make the text uneven at this size.
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

}  // namespace

QColor Theme::colour(ColourRole role) const {
  switch (role) {
    case ColourRole::label:
      break;
    case ColourRole::secondary:
      return dark_ ? QColor(0xb0, 0xb0, 0xb6) : QColor(0x5a, 0x5a, 0x60);
    case ColourRole::green:
      return dark_ ? QColor(0x32, 0xd1, 0x58) : QColor(0x1a, 0x8f, 0x3c);
    case ColourRole::orange:
      return dark_ ? QColor(0xff, 0x9f, 0x0a) : QColor(0xc0, 0x5c, 0x00);
  }
  return dark_ ? QColor(0xf2, 0xf2, 0xf4) : QColor(0x1d, 0x1d, 0x1f);
}

QColor Theme::window() const { return dark_ ? QColor(0x24, 0x24, 0x27) : QColor(0xf7, 0xf7, 0xf8); }

QColor Theme::outline() const { return dark_ ? QColor(255, 255, 255, 46) : QColor(0, 0, 0, 46); }

QColor Theme::link() const { return dark_ ? QColor(0x6c, 0xb2, 0xff) : QColor(0x00, 0x5f, 0xcc); }

QColor Theme::buttonFace() const { return dark_ ? QColor(255, 255, 255, 30) : QColor(255, 255, 255); }

QColor Theme::hover() const { return dark_ ? QColor(255, 255, 255, 18) : QColor(0, 0, 0, 14); }

QPalette Theme::palette() const {
  const QColor text = colour(ColourRole::label);
  QPalette palette(window());
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
    palette.setColor(role, text);
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::ToolTipBase})
    palette.setColor(role, window());
  palette.setColor(QPalette::Highlight, link());
  palette.setColor(QPalette::HighlightedText, dark_ ? QColor(Qt::black) : QColor(Qt::white));
  return palette;
}

void Theme::install() {
  installAccess();
  QApplication::setStyle(QStringLiteral("Fusion"));
  QIcon::setThemeSearchPaths(QIcon::themeSearchPaths() +
                             QStandardPaths::locateAll(QStandardPaths::GenericDataLocation,
                                                       QStringLiteral("icons"),
                                                       QStandardPaths::LocateDirectory));
  if (QIcon::themeName().isEmpty()) QIcon::setThemeName(QStringLiteral("hicolor"));
  QIcon::setFallbackThemeName(QStringLiteral("hicolor"));
  QIcon::setFallbackSearchPaths({QStringLiteral("/usr/share/pixmaps")});
}

QFont Theme::font(FontRole role) {
  switch (role) {
    case FontRole::headline:
    case FontRole::body:
      return interfaceFont(13, QFont::Bold);
    case FontRole::subheadline:
      return interfaceFont(11, QFont::Normal);
    case FontRole::callout:
    case FontRole::number:
      return interfaceFont(12, QFont::Normal);
    case FontRole::cardTitle:
      return interfaceFont(12, QFont::DemiBold);
    case FontRole::foldTitle:
      return interfaceFont(13, QFont::DemiBold);
    case FontRole::caption:
    case FontRole::metric:
      break;
  }
  return interfaceFont(10, QFont::Normal);
}

QFont Theme::buttonFont() { return interfaceFont(11, QFont::Medium); }

Appearance::Appearance(QObject* parent) : QObject(parent) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.connect(portalService, portalObject, portalInterface, QStringLiteral("SettingChanged"), this,
              SLOT(settingChanged(QString, QString, QDBusVariant)));
  QDBusMessage question =
      QDBusMessage::createMethodCall(portalService, portalObject, portalInterface, QStringLiteral("Read"));
  question << appearanceGroup << schemeKey;
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

void Appearance::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  if (group == appearanceGroup && key == schemeKey) take(value.variant());
}

// 0: no preference, 1: dark, 2: light. The answer to a question is wrapped once more than a change.
void Appearance::take(const QVariant& value) {
  const QVariant plain = value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
  const unsigned scheme = plain.toUInt();
  preferred_ = scheme == 1 ? std::optional(true) : scheme == 2 ? std::optional(false) : std::nullopt;
}

}  // namespace tarnwick::panel
