#include "context/live_surroundings.h"
#include "context/property_list_bounds.h"
#include "system/port.h"
#include "tests/support/fake_clock.h"
#include "tests/support/recording_tool_runner.h"

namespace {

std::string xml(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>\n";
}

std::string bigEndian(std::uint64_t number, std::size_t size) {
  std::string bytes;
  for (std::size_t at = size; at > 0; --at) bytes += static_cast<char>(number >> (8 * (at - 1)) & 0xFFU);
  return bytes;
}

// A binary list from its encoded objects, the first one on top; references take two bytes.
std::string binary(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::string table;
  for (const std::string& object : objects) {
    table += bigEndian(bytes.size(), 4);
    bytes += object;
  }
  const std::size_t tableAt = bytes.size();
  return bytes + table + std::string(6, '\0') + "\x04\x02" + bigEndian(objects.size(), 8) + bigEndian(0, 8) +
         bigEndian(tableAt, 8);
}

std::string references(char marker, const std::vector<std::uint64_t>& to) {
  std::string bytes(1, marker);
  for (const std::uint64_t object : to) bytes += bigEndian(object, 2);
  return bytes;
}

TEST(PropertyList, TextsOfBothForms) {
  const auto named = [](const std::string& object) {
    return binary({references('\xD1', {1, 2}), "\x54name", object});
  };
  const std::string whole = named("\x59iPhone 15");
  const std::string wide("\x62\x00\xE9\x20\x26", 5);  // two units of UTF-16
  const std::string withZero("\x63\x00\x61\x00\x00\x00\x62", 7);
  const std::pair<std::string, Text> cases[] = {
      {xml("<dict><key>state</key><integer>3</integer><key>name</key><string>A &amp; “B”</string></dict>"),
       "A & “B”"},
      {xml("<dict><key>inner</key><dict><key>name</key><string>deep</string></dict></dict>"), {}},
      {xml("<dict><key>name</key><string>cut"), {}},
      {"name = iPhone;", {}},
      {"", {}},
      {whole, "iPhone 15"},
      {named(wide), "\xC3\xA9\xE2\x80\xA6"},
      {named(withZero), std::string("a\0b", 3)},
      {named("\x10\x07"), {}}};
  for (const auto& [list, text] : cases) EXPECT_EQ(propertyListText(list, "name"), text) << list;
  for (std::size_t at = 8; at < whole.size(); ++at) {
    propertyListText(whole.substr(0, at), "name");
    for (const char byte : {'\x00', '\x7F', '\xFF'})
      propertyListText(std::string(whole).replace(at, 1, 1, byte), "name");
  }
}

TEST(PropertyList, AbsurdNestingIsRefused) {
  std::string nested;
  for (int level = 0; level < 100'000; ++level) nested += "<array>";
  EXPECT_EQ(propertyListText(xml(nested), "name"), std::nullopt);

  std::vector<std::string> chain;
  for (std::uint64_t level = 1; level < 60'000; ++level) chain.push_back(references('\xA1', {level}));
  chain.emplace_back("\x08");
  EXPECT_EQ(propertyListText(binary(chain), "name"), std::nullopt);

  // Small in bytes; unfolded, ten to the fortieth texts.
  std::vector<std::string> doubling;
  for (std::uint64_t level = 1; level <= 40; ++level)
    doubling.push_back(references('\xAA', std::vector<std::uint64_t>(10, level)));
  doubling.emplace_back("\x51x");
  EXPECT_EQ(propertyListText(binary(doubling), "name"), std::nullopt);
}

TEST(PropertyList, WhatCostsTheLibraryMuchIsRefused) {
  const auto named = [](int entities) {
    std::string name;
    for (int i = 0; i < entities; ++i) name += "&amp;";
    return xml("<dict><key>name</key><string>" + name + "</string></dict>");
  };
  EXPECT_EQ(propertyListText(named(1'990), "name"), std::string(1'990, '&'));
  EXPECT_FALSE(isHarmlessPropertyList(named(2'000)));
  EXPECT_FALSE(isHarmlessPropertyList(xml("<dict></dict>") + std::string(65'536, ' ')));
  // A text of 30,000 bytes that 1,000 entries of a list name each.
  std::string text = "\x5F\x11\x75\x30" + std::string(30'000, 'x');
  const std::string list =
      "\xAF\x11\x03\xE8" + references('\x08', std::vector<std::uint64_t>(1'000, 1)).substr(1);
  EXPECT_FALSE(isHarmlessPropertyList(binary({list, text})));

  // From fifteen entries on a container's count is a number of its own.
  const std::vector<std::uint64_t> fifteen(15, 1);
  EXPECT_TRUE(
      isHarmlessPropertyList(binary({"\xAF\x10\x0F" + references('\x08', fifteen).substr(1), "\x08"})));
  // Counts beyond the list: one more than the largest would be none, and so would twice the middle one.
  for (const char* claim :
       {"\xAF\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "\xDF\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"})
    EXPECT_FALSE(isHarmlessPropertyList(binary({claim, "\x08"}))) << claim;
}

struct LiveSurroundingsTest : testing::Test {
  void SetUp() override { ::unsetenv("TARNWICK_NO_TOOLS"); }

  TempFolder home_;
  RecordingToolRunner runner_;
  FakeClock clock_;
  ToolPlaces none_{ToolCandidates{}};
  DirectFiles files_;
  GitReader gitReader_{runner_, none_, clock_, files_, home_.path(), [] { return false; }};
  ClaudeReader claudeReader_{home_.path(), files_};
  LiveSurroundings live_{Self{7, 501, home_.path()}, gitReader_, claudeReader_, none_, files_};
};

TEST_F(LiveSurroundingsTest, HeadsOfFilesAreValidText) {
  EXPECT_EQ(live_.fileHead(home_.write("empty.py", "")), "");
  const std::string text(1'499, 'x');
  EXPECT_EQ(live_.fileHead(home_.write("long.py", text + "yz")), text + "y");
  EXPECT_EQ(live_.fileHead(home_.write("cut.py", text + "é")), text + "\uFFFD") << "half a character";
  EXPECT_EQ(live_.fileHead(home_.path()), std::nullopt);
}

struct CountingFiles : Files {
  FileAnswer ask(const FileQuestion& question) override { return ++asked[question.path], answerTo(question); }
  bool hasTime() override { return inTime; }
  std::map<std::string, int> asked;
  bool inTime = true;
};

// Many servers share their ancestors, most of which have no mark.
TEST_F(LiveSurroundingsTest, AFolderIsAskedForOnceInACheck) {
  CountingFiles files;
  LiveSurroundings live(Self{}, gitReader_, claudeReader_, none_, files);
  const std::string mark = home_.at(".git");
  EXPECT_FALSE(live.exists(mark) || live.exists(mark));
  home_.write(".git", "");
  EXPECT_FALSE(live.exists(mark)) << "in this check";
  EXPECT_THAT(files.asked, ElementsAre(Pair(mark, 1)));
  live.beginCheck();
  EXPECT_TRUE(live.exists(mark) && live.exists(mark));
  EXPECT_THAT(files.asked, ElementsAre(Pair(mark, 2)));
  const std::string deep(1'000, '/');
  for (int folder = 1'000; folder < 6'000; ++folder) live.exists(deep + std::to_string(folder));
  for (const int folder : {1'000, 5'999}) live.exists(deep + std::to_string(folder));
  EXPECT_EQ(files.asked[deep + "1000"] + 10 * files.asked[deep + "5999"], 21)
      << "4 MiB of them are remembered";
  files.asked.erase(files.asked.begin(), files.asked.find(mark));
  files.inTime = false;
  live.beginCheck();
  EXPECT_FALSE(live.exists(mark));
  EXPECT_THAT(files.asked, ElementsAre(Pair(mark, 2))) << "no time to ask";
  ClaudeReader claude(home_.path(), files);
  const std::string folder = home_.at(".claude/projects/p/");
  std::filesystem::create_directories(folder);
  for (int session = 0; session < 2; ++session) claude.transcript("gone");
  EXPECT_EQ(files.asked[folder + "gone.jsonl"], 1);
}

TEST_F(LiveSurroundingsTest, ADeviceIsNamedByItsPropertyListAndASimulatorTakesItsTool) {
  const std::string list = xml("<dict><key>name</key><string>iPhone</string></dict>");
  const std::string folder = "Library/Developer/CoreSimulator/Devices/";
  const auto at = [&](const std::string& place, const std::string& text) {
    return live_.deviceName(home_.write(place, text));
  };
  EXPECT_EQ(at(folder + "4711/device.plist", list), "iPhone");
  EXPECT_EQ(at(folder + "4712/device.plist", list + std::string(65'536 - list.size(), ' ')), "iPhone");
  EXPECT_EQ(at(folder + "4713/device.plist", list + std::string(65'537 - list.size(), ' ')), std::nullopt);
  EXPECT_EQ(at(folder + "4714/device.plist",
               xml("<dict><key>name</key><string>" + std::string(256, 'x') + "</string></dict>")),
            std::string(255, 'x'));
  for (const std::string& elsewhere :
       Strings{"device.plist", "4711/device.plist", "Devices/4711/device.plist", folder + "device.plist",
               folder + "4711/x/device.plist", folder + "4711/x.plist", folder + "../device.plist"})
    EXPECT_EQ(at(elsewhere, list), std::nullopt) << elsewhere;
  EXPECT_EQ(live_.deviceName(home_.at(folder + "missing/device.plist")), std::nullopt);
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown(home_.at(folder + "4711/device.plist").c_str(), 65'534, 65'534), 0);
    EXPECT_EQ(live_.deviceName(home_.at(folder + "4711/device.plist")), std::nullopt) << "somebody else's";
  }
  ToolPlaces simctl{ToolCandidates{.simctl = {home_.script("simctl", "exit 0")}}};
  EXPECT_TRUE(LiveSurroundings(Self{}, gitReader_, claudeReader_, simctl, files_).hasSimctl() &&
              !live_.hasSimctl());
}

}  // namespace
