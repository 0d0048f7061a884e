// The panel's look while it is open and the desktop changes its mind, told by a stand-in for its portal.
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QScreen>

#include "tests/app/panel/qt/panel_stage.h"

namespace {

struct Rgb {
  double red = 0, green = 0, blue = 0;
};
using SettingGroups = QMap<QString, QVariantMap>;

QDBusArgument& operator<<(QDBusArgument& argument, const Rgb& colour) {
  argument.beginStructure();
  argument << colour.red << colour.green << colour.blue;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Rgb& colour) {
  argument.beginStructure();
  argument >> colour.red >> colour.green >> colour.blue;
  argument.endStructure();
  return argument;
}

const QString appearanceGroup = "org.freedesktop.appearance";
const QString interfaceGroup = "org.gnome.desktop.interface";
const QString assistanceGroup = "org.gnome.desktop.a11y.interface";

// On a connection of its own, so that every message crosses the bus.
class StandInPortal : public QDBusVirtualObject {
 public:
  StandInPortal() {
    qDBusRegisterMetaType<Rgb>();
    qDBusRegisterMetaType<SettingGroups>();
    EXPECT_TRUE(bus_.registerVirtualObject("/org/freedesktop/portal/desktop", this));
    EXPECT_TRUE(bus_.registerService("org.freedesktop.portal.Desktop"));
  }
  ~StandInPortal() override {
    bus_.unregisterService("org.freedesktop.portal.Desktop");
    bus_.unregisterObject("/org/freedesktop/portal/desktop");
  }

  QString introspect(const QString& /*path*/) const override { return {}; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (message.member() != "ReadAll") return false;
    SettingGroups answer;
    for (const QString& group : message.arguments().at(0).toStringList()) answer[group] = settings[group];
    return bus.send(message.createReply(QVariant::fromValue(answer)));
  }

  void change(const QString& group, const QString& key, const QVariant& value) {
    QDBusMessage signal = QDBusMessage::createSignal("/org/freedesktop/portal/desktop",
                                                     "org.freedesktop.portal.Settings", "SettingChanged");
    signal << group << key << QVariant::fromValue(QDBusVariant(value));
    EXPECT_TRUE(bus_.send(signal));
  }

  SettingGroups settings{{appearanceGroup, {{"color-scheme", 1U}}},
                         {interfaceGroup, {{"text-scaling-factor", 1.25}}}};

 private:
  QDBusConnection bus_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal");
};

// The portal is there first.
struct WithPortal {
  StandInPortal portal;
};

struct PanelLook : WithPortal, PanelStage {
  // In the margin above the verdict.
  QColor ground() { return panel.window().grab().toImage().pixelColor(200, 6); }
  bool becomes(const Look& look) {
    return await([&] {
      return ground() == Theme(look).window() && panel.window().width() == qRound(400 * look.scale);
    });
  }
};

TEST_F(PanelLook, FollowsTheDesktopWhileThePanelIsOpen) {
  EXPECT_TRUE(becomes({.dark = true, .scale = 1.25})) << "what the portal said at the start";
  const auto before = services.calls;
  panel.window().findChild<QWidget*>("more")->setFocus();
  const QVariant blue = QVariant::fromValue(Rgb{0.2, 0.4, 0.9});
  const std::tuple<QString, QString, QVariant, Look> changes[] = {
      {appearanceGroup, "color-scheme", 2U, {.scale = 1.25}},
      {appearanceGroup, "contrast", 1U, {.highContrast = true, .scale = 1.25}},
      {interfaceGroup, "text-scaling-factor", 2.0, {.highContrast = true, .scale = 2}},
      {interfaceGroup, "text-scaling-factor", 9.0, {.highContrast = true, .scale = 2}},
      {interfaceGroup, "text-scaling-factor", 0.5, {.highContrast = true}},
      {appearanceGroup, "contrast", 0U, {}},
      {assistanceGroup, "high-contrast", true, {.highContrast = true}},
      {assistanceGroup, "high-contrast", false, {}},
      {appearanceGroup, "accent-color", blue, {.accent = QColor::fromRgbF(0.2F, 0.4F, 0.9F)}},
      {appearanceGroup, "accent-color", QVariant::fromValue(Rgb{-1, -1, -1}), {}},
      {appearanceGroup, "color-scheme", 1U, {.dark = true}},
      {appearanceGroup, "accent-color", blue, {.dark = true, .accent = QColor::fromRgbF(0.2F, 0.4F, 0.9F)}},
      {appearanceGroup, "accent-color", "blue", {.dark = true}}};
  for (const auto& [group, key, value, look] : changes) {
    portal.change(group, key, value);
    ASSERT_TRUE(await([&] { return appearance.look() == look; })) << key.toStdString();
    ASSERT_TRUE(becomes(look)) << key.toStdString();
    EXPECT_EQ(focused(), "more");
    EXPECT_TRUE(panel.window().screen()->availableGeometry().contains(panel.window().geometry()));
  }
  EXPECT_EQ(services.calls, before) << "no check was started for it";
}

}  // namespace
