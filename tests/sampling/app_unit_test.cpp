#include "sampling/decode/app_unit.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(ApplicationIDTest, FollowsTheFormOfUnitNames) {
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {"app-firefox.service", "firefox"},
      {"app-org.kde.kate@3f2a.service", "org.kde.kate"},
      {"app-gnome-org.gnome.Nautilus@1-2.service", "org.gnome.Nautilus"},
      {"app-gnome\\x2dkeyring\\x2dssh@autostart.service", "gnome-keyring-ssh"},
      {"app-my\\x2dlauncher-code\\x2doss-99.scope", "code-oss"},
      {"app-caf\\xc3\\xa9-1.scope", "caf\xC3\xA9"},
      {"app-a\\xff-1.scope", "a\xEF\xBF\xBD"},
      {"app-4021.scope", std::nullopt},
      {"app-.service", std::nullopt},
      {"app-a\\n-1.scope", std::nullopt},
      {"app-a\\-1.scope", std::nullopt},
      {"app-..\\x2fetc-1.scope", std::nullopt},
      {"app-a-b-c-d.scope", std::nullopt},
      {"app-firefox-4021.slice", std::nullopt},
      {"app-a\\x2g-1.scope", std::nullopt},
      {"app-a\\x00b-1.scope", std::nullopt},
      {"app-..-1.scope", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [unit, id] : cases) EXPECT_EQ(applicationID(unit), id) << unit;
}

TEST(AppUnitOfCgroupTest, FindsTheUnitBelowTheApplicationSlice) {
  const std::string manager = "/user.slice/user-1000.slice/user@1000.service";
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {"0::" + manager + "/app.slice/app-firefox-1.scope\n", "app-firefox-1.scope"},
      {"9:name=systemd:" + manager + "/app.slice/app-firefox-1.scope\n0::/\n", "app-firefox-1.scope"},
      {"12:cpu:/\n0::" + manager + "/app.slice/app-code.slice/app-code-7.scope/inner", "app-code-7.scope"},
      {"0::" + manager + "/app.slice/app-code.slice/vte-spawn-1.scope", std::nullopt},
      {"0::" + manager + "/session.slice/app-shell-1.scope", std::nullopt},
      {"0::/system.slice/app.slice/app-firefox-1.scope", std::nullopt},
      {"5:cpu:" + manager + "/app.slice/app-firefox-1.scope", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [text, unit] : cases) EXPECT_EQ(appUnitOfCgroup(text), unit) << text;
}

}  // namespace
}  // namespace tarnwick
