#include "sampling/linux/applications.h"
#include "sampling/decode/desktop_entry.h"
#include "sampling/linux/desktop_entries.h"
#include "tests/sampling/linux/proc_tree.h"

namespace {

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
  const auto cut =
      desktopEntryText(app + "Name=" + std::string(300, 'n') + "\nIcon=" + std::string(5'000, 'i') +
                           "\nExec=" + std::string(4'097, 'e'),
                       {})
          .value();
  EXPECT_EQ(std::tuple(cut.name.size(), cut.icon.size(), cut.command), std::tuple(255U, 4'096U, ""));
  EXPECT_EQ(desktopEntryText("Name=a\nType=Application\n", {}), std::nullopt);
  EXPECT_EQ(localeVariants("sr_RS.UTF-8@latin"), (Strings{"sr_RS@latin", "sr_RS", "sr@latin", "sr"}));
  EXPECT_THAT(localeVariants("C.UTF-8"), IsEmpty());
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

TEST(DesktopEntries, WhatIsNoSmallFileIsNotThereAndAnswersStayForTheRun) {
  const TempFolder folder;
  const std::string text = entry("Before");
  folder.write("fits.desktop", text + std::string(desktopEntryLimit - text.size(), '#'));
  folder.write("big.desktop", text + std::string(desktopEntryLimit - text.size() + 1, '#'));
  DesktopEntries entries({folder.path()}, "");
  for (int look = 0; look < 2; ++look) {
    EXPECT_EQ(entries.find("fits").value().name, "Before");
    for (const char* id : {"big", "late"}) EXPECT_FALSE(entries.find(id)) << id;
    for (const char* file : {"fits.desktop", "late.desktop"}) folder.write(file, entry("After"));
  }
  for (int file = 0; file < 2'050; ++file) folder.write(std::to_string(file) + ".desktop", text);
  EXPECT_THAT(DesktopEntries({folder.path()}, "").all(), SizeIs(2'048));
}

constexpr const char* slice = "/user.slice/user-7.slice/user@7.service/app.slice/";

// A machine of made processes and installed programs.
struct Session {
  Session() { std::filesystem::create_directories(disk.at("cgroup") + slice); }

  ProcTree tree;
  TempFolder disk;
  DesktopEntries entries{{disk.at("entries")}, ""};
  Applications applications{
      entries, {.uid = 7, .home = disk.at("home"), .procRoot = tree.root(), .cgroupRoot = disk.at("cgroup")}};

  std::string program(const std::string& path, const std::string& text = "binary") const {
    const std::string file = disk.write(path, text);
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
  }
  std::string entry(const std::string& id, const std::string& command, const std::string& more = "") const {
    return disk.write("entries/" + id + ".desktop", "[Desktop Entry]\nType=Application\nName=The " + id +
                                                        "\nExec=" + command + "\n" + more);
  }
  // What a process with that executable belongs to, "none" for nothing.
  std::string app(Pid pid, const std::string& path, const std::string& unit = "", Pid parent = 1,
                  int terminal = 0) {
    const std::string folder = std::to_string(pid);
    tree.stat(pid, {.ppid = parent, .terminal = terminal, .startTicks = static_cast<std::uint64_t>(pid)});
    if (!unit.empty()) {
      tree.write(folder + "/cgroup", "0::" + std::string(slice) + unit + "\n");
      disk.write("cgroup" + std::string(slice) + unit + "/cgroup.procs", "");
    }
    const ProcReader reader(tree.root());
    std::array<char, 1'024> buffer{};
    const auto stat = procStat(*reader.read(pid, "stat", buffer));
    return applications.of(*reader.open(pid), *stat, path).value_or("none");
  }
  std::vector<std::pair<Pid, std::string>> running() {
    std::vector<std::pair<Pid, std::string>> all;
    for (const RunningApp& app : applications.runningApps()) all.emplace_back(app.pid, app.name);
    return all;
  }
};

TEST(Applications, AnInstallationIsTheFolderOfTheRealFile) {
  Session s;
  s.program("lib/editor/editor");
  s.entry("editor", s.program("lib/editor/bin/start",
                              "#!/usr/bin/env bash\nexec \"$(dirname \"$0\")/../editor\" \"$@\"\n"));
  const std::string own = s.program("home/.cargo/bin/term");
  s.entry("term", own);
  s.entry("list", s.program("lib/list/list"), "Terminal=true\n");
  s.entry("tool", s.program("conda/bin/tool", "#!" + s.disk.at("conda/bin/python3") + "\n"));
  EXPECT_EQ(s.app(9, s.disk.at("lib/editor/resources/helper")), "The editor");
  EXPECT_EQ(s.app(10, own), "The term");
  Pid pid = 10;
  for (const char* other : {"lib/other", "home/.cargo/bin/cargo", "lib/list/list", "conda/bin/python3"})
    EXPECT_EQ(s.app(++pid, s.disk.at(other)), "none") << other;
}

TEST(Applications, TheUnitNamesOneOfSeveralAndTellsOfRuntimes) {
  Session s;
  const std::string office = s.program("office/office");
  s.entry("office-start", office);
  s.entry("office-words", office + " --words");
  s.entry("merge", s.program("merge/merge", "#!/usr/bin/python3 -s\n"));
  s.entry("chat", "java -jar chat.jar");
  EXPECT_EQ(s.app(20, office), "The office-start");
  EXPECT_EQ(s.app(21, office, "app-office\\x2dwords-1.scope"), "The office-words");
  EXPECT_EQ(s.app(30, "/usr/bin/java", "app-chat-9.scope", 1, 34'816), "none") << "typed in a terminal";
  EXPECT_EQ(s.app(31, "/usr/bin/java", "app-chat-9.scope"), "The chat");
  s.disk.write("cgroup" + std::string(slice) + "app-chat-9.scope/cgroup.procs", "31\n32\n");
  EXPECT_EQ(s.app(32, "/usr/bin/java"), "none") << "no unit";
  s.tree.write("33/cgroup", "0::" + std::string(slice) + "app-chat-9.scope\n");
  EXPECT_EQ(s.app(33, "/usr/bin/java"), "none") << "not the unit's first process";
  s.tree.write("40/cmdline", std::string_view("python3\0server.py\0", 18));
  EXPECT_EQ(s.app(40, "/usr/bin/python3", "app-merge-1.scope"), "none") << "another script";
}

TEST(Applications, TheMainProcessRunsForAll) {
  Session s;
  const std::string browser = s.program("browser/browser");
  s.entry("firefox-esr", browser, "NoDisplay=true\n");
  const std::string helper = s.disk.at("browser/crash");
  EXPECT_EQ(s.app(50, helper), "Firefox") << "known by its rules' name";
  EXPECT_THAT(s.running(), IsEmpty()) << "a helper alone is no application";
  s.app(62, browser, "", 61);
  s.app(61, browser);
  s.app(71, browser, "app-x@autostart.service");
  EXPECT_THAT(s.running(), ElementsAre(std::pair(61, "Firefox"), std::pair(71, "Firefox")));
  EXPECT_TRUE(s.applications.runningApps().front().background) << "not shown";
  s.tree.stat(61, {.startTicks = 999});
  EXPECT_THAT(s.running(), ElementsAre(std::pair(71, "Firefox"))) << "another process has its pid";
  s.applications.beginPass();
  s.applications.stillThere(71, {.startTicks = 71});
  EXPECT_THAT(s.running(), ElementsAre(std::pair(71, "Firefox")));
  s.applications.beginPass();
  s.applications.stillThere(50, {.startTicks = 50});
  EXPECT_THAT(s.running(), IsEmpty());
}

}  // namespace
