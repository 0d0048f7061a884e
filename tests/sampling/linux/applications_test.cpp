#include <sys/stat.h>

#include "sampling/decode/desktop_entry.h"
#include "sampling/linux/desktop_entries.h"
#include "sampling/linux/xdg_workspace.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

using List = std::vector<std::string>;

TEST(DesktopEntryText, NameAndShown) {
  const std::string app = "[Desktop Entry]\nType=Application\n";
  const std::tuple<std::string, const char*, bool> cases[] = {
      {"# x\n [Desktop Entry]\r\nType = Application\r\nName = Editor \r\n", "Editor", true},
      {app + "Name[de]=Text\nName[de_AT]=Textl\nName=Editor\n", "Textl", true},
      {app + "Name[fr]=Texte\nName[de_CH]=Schwyz\nName=Editor\nName[de]=\n", "Editor", true},
      {app + "NameX=a\nName[=b\nName[]=c\nGenericName=d\n", "", true},
      {"Name=a\n[X]\nName=b\n" + app + "Name=c\n[Desktop Action new]\nName=d\nHidden=true\n", "c", true},
      {app + "Name=a\\sb\\tc\\\\n\\q\\\n", "a b\tc\\n\\q\\", true},
      {app + "Name=\xff!", "\xef\xbf\xbd!", true},
      {app + "Name=a\nNoDisplay=true\n", "a", false},
      {app + "Name=a\nHidden=true\nNoDisplay=false\n", "a", false},
      {"[Desktop Entry]\nType=Link\nName=a\n", "a", false}};
  for (const auto& [text, name, shown] : cases) {
    const auto entry = desktopEntryText(text, localeVariants("de_AT.UTF-8"));
    EXPECT_EQ(entry, (DesktopEntryText{name, shown})) << text;
  }
  EXPECT_EQ(desktopEntryText("Name=a\nType=Application\n", {}), std::nullopt);
  EXPECT_EQ(localeVariants("sr_RS.UTF-8@latin"), (List{"sr_RS@latin", "sr_RS", "sr@latin", "sr"}));
  EXPECT_EQ(localeVariants("C.UTF-8"), List{});
}

std::string entry(const std::string& name) {
  return "[Desktop Entry]\nType=Application\nName=" + name + "\n";
}

TEST(DesktopEntries, FirstFolderWinsAndSubfoldersCount) {
  const TempFolder folder;
  const std::string first = folder.write("first/editor.desktop", entry("First"));
  folder.write("second/editor.desktop", entry("Second"));
  const std::string nested = folder.write("second/kde/office-kit/words.desktop", entry("Words"));
  folder.write("first/masked.desktop", "[Desktop Entry]\nHidden=true\n");
  folder.write("second/masked.desktop", entry("Masked"));
  folder.write("outside.desktop", entry("Outside"));
  std::filesystem::create_directory_symlink(".", folder.at("first/loop"));
  DesktopEntries entries({folder.at("missing"), folder.at("first"), folder.at("second")}, "");
  EXPECT_EQ(entries.find("editor"), (DesktopEntry{"editor", "First", first, true}));
  EXPECT_EQ(entries.find("kde-office-kit-words"),
            (DesktopEntry{"kde-office-kit-words", "Words", nested, true}));
  for (const std::string id :
       {"masked", "", "../outside", "..-outside", "kde-..-..-outside", "loop-loop-loop-loop-loop-editor"})
    EXPECT_EQ(entries.find(id), std::nullopt) << id;
  EXPECT_EQ(entries.find(std::string("editor\0", 7)), std::nullopt);
}

TEST(DesktopEntries, AnswersStayForTheRun) {
  const TempFolder folder;
  folder.write("a.desktop", entry("Before"));
  DesktopEntries entries({folder.path()}, "");
  EXPECT_TRUE(entries.find("a"));
  EXPECT_FALSE(entries.find("b"));
  folder.write("a.desktop", entry("After"));
  folder.write("b.desktop", entry("Late"));
  EXPECT_EQ(entries.find("a")->name, "Before");
  EXPECT_FALSE(entries.find("b"));
}

TEST(DesktopEntries, WhatIsNoSmallFileIsNotThere) {
  const TempFolder folder;
  ASSERT_EQ(mkfifo(folder.at("pipe.desktop").c_str(), 0600), 0);
  const std::string text = entry("Big");
  folder.write("fits.desktop", text + std::string(desktopEntryLimit - text.size(), '#'));
  folder.write("big.desktop", text + std::string(desktopEntryLimit - text.size() + 1, '#'));
  DesktopEntries entries({folder.path()}, "");
  EXPECT_TRUE(entries.find("fits"));
  for (const char* id : {"pipe", "big"}) EXPECT_FALSE(entries.find(id)) << id;
}

const std::string slice = "/user.slice/user-1000.slice/user@1000.service/app.slice/";

struct Session {
  TempFolder folder;
  DesktopEntries entries{{folder.at("applications")}, ""};

  std::string entry(const std::string& id, const std::string& more = "") const {
    return folder.write("applications/" + id + ".desktop",
                        "[Desktop Entry]\nType=Application\nName=The " + id + "\n" + more);
  }
  void unit(const std::string& mount, const std::string& name, const std::string& pids) const {
    folder.write("cgroup" + mount + slice + name + "/cgroup.procs", pids);
  }
  std::vector<RunningApp> apps(std::uint32_t uid = 1000) {
    return XdgWorkspace(entries, uid, folder.at("cgroup")).runningApps();
  }
};

TEST(XdgWorkspace, ListsTheApplicationUnits) {
  Session session;
  const std::string editor = session.entry("org.demo.Editor");
  const std::string mail = session.entry("mail-reader");
  const std::string helper = session.entry("helper", "NoDisplay=true\n");
  const std::string disk = session.entry("disk");
  session.unit("", "app-gnome-org.demo.Editor-77.scope", "900\n0\n31\nx\n-4\n99999999999\n");
  session.unit("", R"(app-mail\x2dreader@abc.service)", "");
  session.unit("", R"(app-mail\x2dreader@abc.service/inner/deeper)", "512\n400\n");
  session.unit("", "app-helper-1.scope", "50\n");
  session.unit("", "app-flat.slice/app-flat-disk-3.scope", "60");
  session.unit("", "app-disk@autostart.service", "40\n");
  session.unit("", "app-disk@gone.service", "");    // no process is left
  session.unit("", "app-unknown-1.scope", "70\n");  // no desktop entry
  session.unit("", "dbus-:1.2-org.demo.Editor.service", "80\n");
  const std::vector<RunningApp> expected = {{40, "The disk", "disk", disk, true},
                                            {60, "The disk", "disk", disk, false},
                                            {31, "The org.demo.Editor", "org.demo.Editor", editor, false},
                                            {50, "The helper", "helper", helper, true},
                                            {400, "The mail-reader", "mail-reader", mail, false}};
  EXPECT_EQ(session.apps(), expected);
  EXPECT_TRUE(session.apps(1001).empty());
}

TEST(XdgWorkspace, FindsTheTreeInItsOtherPlaces) {
  for (const char* mount : {"", "/unified", "/systemd"}) {
    Session session;
    EXPECT_TRUE(session.apps().empty());
    session.entry("disk");
    session.unit(mount, "app-disk-1.scope", "7\n");
    EXPECT_EQ(session.apps().size(), 1U) << mount;
  }
}

}  // namespace
}  // namespace tarnwick
