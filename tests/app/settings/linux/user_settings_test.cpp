#include <sys/stat.h>

#include "app/settings/linux/login_item.h"
#include "app/settings/linux/user_defaults.h"
#include "tests/support/testing.h"

namespace {

namespace fs = std::filesystem;

DirectFiles files;

TEST(UserSettings, DefaultsReadOneNameAmongOthersAndKeepThose) {
  const TempFolder folder;
  const auto isTrue = [&](const std::string& text) {
    folder.write("tarnwick/defaults", text);
    return UserDefaults(files, folder.path()).isTrue("prTitles");
  };
  for (const char* on :
       {"prTitles = true\n", "  prTitles\t=  true \r\n", "prTitles = false\nprTitles = true\n",
        "prTitles = true\nprTitles =\nprTitles = \t\r\n"})
    EXPECT_TRUE(isTrue(on)) << on;
  for (const std::string& off :
       Strings{"", "prTitles = truely\n", "prTitlesX = true\nXprTitles = true\nprTitles\n",
               "prTitles = true\nprTitles = false\n", "prTitles =\n",
               std::string(70'000, '\n') + "prTitles = true\n"})
    EXPECT_FALSE(isTrue(off)) << off.substr(0, 40);

  fs::remove_all(folder.at("tarnwick"));
  const UserDefaults defaults(files, folder.path());
  EXPECT_TRUE(!defaults.isTrue("prTitles") && defaults.set("prTitles", true) && defaults.isTrue("prTitles"))
      << "the folder is made";
  folder.write("tarnwick/defaults", "# mine\nother =\nprTitles =\nprTitles = true\nprTitles = true");
  EXPECT_TRUE(defaults.set("prTitles", false));
  EXPECT_EQ(textOfFile(folder.at("tarnwick/defaults")), "# mine\nother =\nprTitles =\nprTitles = false\n")
      << "a line without a value is somebody's own";
}

TEST(UserSettings, ALinkedFileStaysALinkAndAPipeIsNotRead) {
  const TempFolder folder;
  folder.write("elsewhere/defaults", "prTitles = true\n");
  const std::string file = folder.write("tarnwick/file", "");
  fs::create_symlink(folder.at("elsewhere/defaults"), folder.at("tarnwick/defaults"));
  EXPECT_TRUE(UserDefaults(files, folder.path()).set("prTitles", false));
  EXPECT_TRUE(fs::is_symlink(folder.at("tarnwick/defaults")));
  EXPECT_EQ(textOfFile(folder.at("elsewhere/defaults")), "prTitles = false\n");
  fs::remove(folder.at("tarnwick/defaults"));
  ASSERT_EQ(mkfifo(folder.at("tarnwick/defaults").c_str(), 0600), 0);
  EXPECT_FALSE(UserDefaults(files, folder.path()).isTrue("prTitles")) << "and does not wait for a writer";
  EXPECT_FALSE(UserDefaults(files, file).set("prTitles", true) ||
               LoginItem(files, file, "/bin/x").setEnabled(true));
}

TEST(UserSettings, TheLoginItemComesAndGoesAndStartsThisVeryProgram) {
  const TempFolder folder;
  const std::string entry = folder.at("autostart/tarnwick.desktop");
  const LoginItem item(files, folder.path(), "/opt/my tools/tarnwick");
  EXPECT_TRUE(!item.isEnabled() && item.setEnabled(true) && item.isEnabled());
  EXPECT_THAT(textOfFile(entry), AllOf(HasSubstr("[Desktop Entry]\nType=Application\nName=Tarnwick\n"),
                                       HasSubstr("\nExec=\"/opt/my tools/tarnwick\"\n")));
  EXPECT_TRUE(item.setEnabled(false) && !item.isEnabled() && !fs::exists(entry));
  for (const char* off : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"}) {
    folder.write("autostart/tarnwick.desktop", std::string("[Desktop Entry]\nExec=/bin/tarnwick\n") + off);
    EXPECT_FALSE(item.isEnabled()) << off;
  }
  // The path is escaped twice: as a word of a command line, and as a text of the entry.
  EXPECT_TRUE(LoginItem(files, folder.path(), R"(/opt/50%/`x`/"x"/a\\$x\)").setEnabled(true));
  EXPECT_THAT(textOfFile(entry), HasSubstr(R"(Exec="/opt/50%%/\\`x\\`/\\"x\\"/a\\\\\\\\\\$x\\\\")"));
}

}  // namespace
