#include "sampling/decode/desktop_entry.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "sampling/linux/desktop_entries.h"
#include "tests/support/temp_folder.h"

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

TEST(DesktopEntries, FoldersFollowTheBaseDirectoryRules) {
  const List usual = {"/h/.local/share/applications", "/usr/local/share/applications",
                      "/usr/share/applications"};
  EXPECT_EQ(applicationFolders({}, {}, "/h"), usual);
  EXPECT_EQ(applicationFolders("relative", "", "/h"), usual);
  EXPECT_EQ(applicationFolders("/data/", "/x:relative::/y//", "/h"),
            (List{"/data/applications", "/x/applications", "/y/applications"}));
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
  const List none = {"masked",
                     "",
                     "../outside",
                     "..-outside",
                     "kde-..-..-outside",
                     std::string("editor\0", 7),
                     "loop-loop-loop-loop-loop-editor"};
  for (const std::string& id : none) EXPECT_EQ(entries.find(id), std::nullopt) << id;
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

}  // namespace
}  // namespace tarnwick
