#include <sys/stat.h>

#include "app/settings/linux/config_file.h"
#include "app/settings/linux/login_item.h"
#include "app/settings/linux/user_defaults.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

TEST(UserSettings, DefaultsReadOneNameAmongOthers) {
  const TempFolder folder;
  const std::pair<std::string, bool> cases[] = {{"", false},
                                                {"prTitles = true\n", true},
                                                {"  prTitles\t=  true \r\n", true},
                                                {"prTitles = truely\n", false},
                                                {"prTitlesX = true\nXprTitles = true\nprTitles\n", false},
                                                {"prTitles = false\nprTitles = true\n", true},
                                                {"prTitles = true\nprTitles = false\n", false},
                                                {"prTitles = true\nprTitles =\nprTitles = \t\r\n", true},
                                                {"prTitles =\n", false},
                                                {std::string(70'000, '\n') + "prTitles = true\n", false}};
  for (const auto& [text, value] : cases) {
    folder.write("tarnwick/defaults", text);
    EXPECT_EQ(UserDefaults(folder.path()).isTrue("prTitles"), value) << text.substr(0, 40);
  }
}

TEST(UserSettings, DefaultsKeepWhatTheyDoNotKnow) {
  const TempFolder folder;
  const UserDefaults defaults(folder.path());
  EXPECT_FALSE(defaults.isTrue("prTitles"));
  EXPECT_TRUE(defaults.set("prTitles", true)) << "the folder is made";
  EXPECT_TRUE(defaults.isTrue("prTitles"));
  folder.write("tarnwick/defaults", "# mine\nother =\nprTitles =\nprTitles = true\nprTitles = true");
  EXPECT_TRUE(defaults.set("prTitles", false));
  EXPECT_EQ(readConfigFile(folder.at("tarnwick/defaults")), "# mine\nother =\nprTitles =\nprTitles = false\n")
      << "a line without a value is somebody's own";
}

TEST(UserSettings, AFileThatCannotBeReadOrWrittenChangesNothing) {
  const TempFolder folder;
  fs::create_directories(folder.at("tarnwick"));
  ASSERT_EQ(mkfifo(folder.at("tarnwick/defaults").c_str(), 0600), 0);
  EXPECT_FALSE(UserDefaults(folder.path()).isTrue("prTitles")) << "and does not wait for a writer";
  const std::string file = folder.write("file", "");
  EXPECT_FALSE(UserDefaults(file).set("prTitles", true) || LoginItem(file, "/bin/x").setEnabled(true));
}

TEST(UserSettings, ALinkedFileStaysALink) {
  const TempFolder folder;
  folder.write("elsewhere/defaults", "prTitles = true\n");
  fs::create_directories(folder.at("tarnwick"));
  fs::create_symlink(folder.at("elsewhere/defaults"), folder.at("tarnwick/defaults"));
  EXPECT_TRUE(UserDefaults(folder.path()).set("prTitles", false));
  EXPECT_TRUE(fs::is_symlink(folder.at("tarnwick/defaults")));
  EXPECT_EQ(readConfigFile(folder.at("elsewhere/defaults")), "prTitles = false\n");
}

TEST(UserSettings, TheLoginItemComesAndGoes) {
  const TempFolder folder;
  const LoginItem item(folder.path(), "/opt/my tools/tarnwick");
  EXPECT_FALSE(item.isEnabled());
  EXPECT_TRUE(item.setEnabled(true));
  EXPECT_TRUE(item.isEnabled());
  EXPECT_THAT(readConfigFile(folder.at("autostart/tarnwick.desktop")),
              AllOf(HasSubstr("[Desktop Entry]\nType=Application\nName=Tarnwick\n"),
                    HasSubstr("\nExec=\"/opt/my tools/tarnwick\"\n")));
  EXPECT_TRUE(item.setEnabled(false));
  EXPECT_FALSE(item.isEnabled());
  EXPECT_FALSE(fs::exists(folder.at("autostart/tarnwick.desktop")));

  for (const char* off : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"}) {
    folder.write("autostart/tarnwick.desktop", std::string("[Desktop Entry]\nExec=/bin/tarnwick\n") + off);
    EXPECT_FALSE(item.isEnabled()) << off;
  }
}

// What the value of an entry's Exec key is to whoever starts it: read as a text, then as a command line.
std::string programOf(const std::string& exec) {
  std::string text;
  for (std::size_t i = 0; i < exec.size(); ++i) {
    if (exec[i] == '\\') ++i;
    text += exec.at(i);
  }
  EXPECT_TRUE(text.size() > 1 && text.front() == '"' && text.back() == '"') << text;
  std::string program;
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    if (text[i] == '\\' || text[i] == '%') ++i;
    program += text.at(i);
  }
  return program;
}

TEST(UserSettings, TheLoginItemStartsThisVeryProgram) {
  const TempFolder folder;
  const std::pair<const char*, const char*> cases[] = {
      {R"(/opt/a b/x)", R"("/opt/a b/x")"},
      {R"(/opt/50%/x)", R"("/opt/50%%/x")"},
      {R"(/opt/$x)", R"("/opt/\\$x")"},
      {R"(/opt/`x`)", R"("/opt/\\`x\\`")"},
      {R"(/opt/"x")", R"("/opt/\\"x\\"")"},
      {R"(/opt/a\x)", R"("/opt/a\\\\x")"},
      {R"(/opt/a\\$x\)", R"("/opt/a\\\\\\\\\\$x\\\\")"},
  };
  for (const auto& [path, exec] : cases) {
    ASSERT_TRUE(LoginItem(folder.path(), path).setEnabled(true));
    EXPECT_THAT(readConfigFile(folder.at("autostart/tarnwick.desktop")),
                HasSubstr(std::string("\nExec=") + exec + "\n"));
    EXPECT_EQ(programOf(exec), path);
  }
}

}  // namespace
}  // namespace tarnwick
