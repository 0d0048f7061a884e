#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/linux/config_file.h"
#include "app/linux/login_item.h"
#include "app/linux/user_defaults.h"

namespace tarnwick {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class UserSettings : public testing::Test {
 protected:
  UserSettings() {
    std::string pattern = fs::temp_directory_path() / "tarnwick-settings-XXXXXX";
    folder = mkdtemp(pattern.data());
  }
  ~UserSettings() override { fs::remove_all(folder); }

  void write(const std::string& file, const std::string& text) const {
    fs::create_directories((folder / file).parent_path());
    std::ofstream(folder / file) << text;
  }

  fs::path folder;
};

TEST_F(UserSettings, DefaultsReadOneNameAmongOthers) {
  const struct {
    std::string text;
    bool value;
  } cases[] = {{"", false},
               {"prTitles = true\n", true},
               {"prTitles=true", true},
               {"  prTitles\t=  true \r\n", true},
               {"prTitles = false\n", false},
               {"prTitles = yes\n", false},
               {"prTitles = truely\n", false},
               {"prTitlesX = true\nXprTitles = true\nprTitles\n", false},
               {"prTitles = false\nprTitles = true\n", true},
               {std::string(70'000, '\n') + "prTitles = true\n", false}};
  for (const auto& [text, value] : cases) {
    write("tarnwick/defaults", text);
    EXPECT_EQ(UserDefaults(folder).isTrue("prTitles"), value) << text.substr(0, 40);
  }
}

TEST_F(UserSettings, DefaultsKeepWhatTheyDoNotKnow) {
  const UserDefaults defaults(folder);
  EXPECT_FALSE(defaults.isTrue("prTitles"));
  EXPECT_TRUE(defaults.set("prTitles", true)) << "the folder is made";
  EXPECT_TRUE(defaults.isTrue("prTitles"));
  write("tarnwick/defaults", "# mine\nother = 5\nprTitles = true\nprTitles = true");
  EXPECT_TRUE(defaults.set("prTitles", false));
  EXPECT_EQ(readConfigFile(folder / "tarnwick/defaults"), "# mine\nother = 5\nprTitles = false\n");
}

TEST_F(UserSettings, AFileThatCannotBeReadOrWrittenChangesNothing) {
  fs::create_directories(folder / "tarnwick");
  ASSERT_EQ(mkfifo((folder / "tarnwick/defaults").c_str(), 0600), 0);
  EXPECT_FALSE(UserDefaults(folder).isTrue("prTitles")) << "and does not wait for a writer";
  write("file", "");
  EXPECT_FALSE(UserDefaults(folder / "file").set("prTitles", true));
  EXPECT_FALSE(LoginItem(folder / "file", "/bin/x").setEnabled(true));
}

TEST_F(UserSettings, ALinkedFileStaysALink) {
  write("elsewhere/defaults", "prTitles = true\n");
  fs::create_directories(folder / "tarnwick");
  fs::create_symlink(folder / "elsewhere/defaults", folder / "tarnwick/defaults");
  EXPECT_TRUE(UserDefaults(folder).set("prTitles", false));
  EXPECT_TRUE(fs::is_symlink(folder / "tarnwick/defaults"));
  EXPECT_EQ(readConfigFile(folder / "elsewhere/defaults"), "prTitles = false\n");
}

TEST_F(UserSettings, TheLoginItemComesAndGoes) {
  const LoginItem item(folder, "/opt/my tools/50%/$x/tarnwick");
  EXPECT_FALSE(item.isEnabled());
  EXPECT_TRUE(item.setEnabled(true));
  EXPECT_TRUE(item.isEnabled());
  const std::string entry = readConfigFile(folder / "autostart/tarnwick.desktop");
  EXPECT_THAT(entry, HasSubstr("[Desktop Entry]\nType=Application\nName=Tarnwick\n"));
  EXPECT_THAT(entry, HasSubstr("\nExec=\"/opt/my tools/50%%/\\\\$x/tarnwick\"\n"));
  EXPECT_TRUE(item.setEnabled(false));
  EXPECT_FALSE(item.isEnabled());
  EXPECT_FALSE(fs::exists(folder / "autostart/tarnwick.desktop"));

  for (const char* off : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"}) {
    write("autostart/tarnwick.desktop", std::string("[Desktop Entry]\nExec=/bin/tarnwick\n") + off);
    EXPECT_FALSE(item.isEnabled()) << off;
  }
}

TEST(ConfigFolder, FollowsTheEnvironmentOnlyToAnAbsolutePlace) {
  const struct {
    const char* named;
    const char* folder;
  } cases[] = {{"/etc/xdg", "/etc/xdg"}, {"relative", "/home/me/.config"}, {"", "/home/me/.config"}};
  for (const auto& [named, folder] : cases) {
    setenv("XDG_CONFIG_HOME", named, 1);
    EXPECT_EQ(configFolder("/home/me"), folder);
  }
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(configFolder("/home/me"), "/home/me/.config");
}

}  // namespace
}  // namespace tarnwick
