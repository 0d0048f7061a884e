#include "context/live_surroundings.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/fake_clock.h"
#include "tests/support/recording_tool_runner.h"
#include "tests/support/temp_folder.h"

namespace tarnwick {
namespace {

class LiveSurroundingsTest : public testing::Test {
 protected:
  void SetUp() override { ::unsetenv("TARNWICK_NO_TOOLS"); }

  TempFolder home_;
  RecordingToolRunner runner_;
  FakeClock clock_;
  ToolPlaces none_{ToolCandidates{}};
  ToolPlaces simctl_{ToolCandidates{"", {}, {home_.script("simctl", "exit 0")}, {}}};
  GitReader gitReader_{runner_, none_, clock_, home_.path(), [] { return false; }};
  ClaudeReader claudeReader_{home_.path()};
  LiveSurroundings live_{Self{7, 501, home_.path()}, gitReader_, claudeReader_, none_};
};

TEST_F(LiveSurroundingsTest, HeadsOfFilesAreValidText) {
  EXPECT_EQ(live_.fileHead(home_.write("empty.py", "")), "");
  const std::string text(1'499, 'x');
  EXPECT_EQ(live_.fileHead(home_.write("long.py", text + "yz")), text + "y");
  // A character of two, three and four bytes that does not fit is one replacement character.
  for (const std::string character : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(live_.fileHead(home_.write("cut.py", text + character)), text + "\xEF\xBF\xBD");
    const std::string shorter(1'501 - character.size(), 'x');
    EXPECT_EQ(live_.fileHead(home_.write("cut.py", shorter + character)), shorter + "\xEF\xBF\xBD");
  }
  EXPECT_EQ(live_.fileHead(home_.path()), std::nullopt);
  EXPECT_EQ(live_.fileHead(home_.at("missing.py")), std::nullopt);
}

TEST_F(LiveSurroundingsTest, EveryQuestionReachesItsReader) {
  home_.write("project/.git/HEAD", "ref: refs/heads/main\n");
  home_.write(".claude/sessions/9.json", R"({"sessionId":"abc"})");
  home_.write(".claude/projects/p/abc.jsonl", R"({"type":"ai-title","aiTitle":"Title"})");
  home_.write(".claude/jobs/j/state.json", R"({"name":"Nightly"})");
  EXPECT_EQ(live_.self().pid, 7);
  EXPECT_EQ(live_.git(home_.at("project"))->branch, "main");
  EXPECT_EQ(live_.claudeSession(9)->title, "Title");
  EXPECT_EQ(live_.claudeJob(home_.at(".claude/jobs/j"))->job, "Nightly");
  EXPECT_TRUE(live_.exists(home_.at("project/.git")));
  EXPECT_FALSE(live_.hasSimctl());
  EXPECT_TRUE(LiveSurroundings(Self{}, gitReader_, claudeReader_, simctl_).hasSimctl());
}

TEST_F(LiveSurroundingsTest, ADeviceIsNamedByItsPropertyList) {
  const std::string list =
      "<plist version=\"1.0\"><dict><key>name</key><string>iPhone</string></dict></plist>";
  EXPECT_EQ(live_.deviceName(home_.write("device.plist", list)), "iPhone");
  EXPECT_EQ(live_.deviceName(home_.write("large.plist", list + std::string(1U << 20U, ' '))), std::nullopt);
  EXPECT_EQ(live_.deviceName(home_.at("missing.plist")), std::nullopt);
}

}  // namespace
}  // namespace tarnwick
