#include <nlohmann/json.hpp>

#include "context/claude_reader.h"
#include "sampling/decode/iso_time.h"
#include "sampling/decode/json_members.h"
#include "tests/support/testing.h"

namespace {

TEST(ClaudeFiles, TheNewestMarkedLineIsTheOnlyOneTried) {
  const std::string older = R"({"type":"ai-title","aiTitle":"old"})";
  const std::string newer = R"({"n":1,"type":"ai-title","aiTitle":"new"})";
  const std::pair<std::string, Text> cases[] = {
      {older + "\n" + newer + "\n{\"type\":\"user\"}\n", "new"},
      {"\n\n" + newer + "\r\n", "new"},
      {older + "\n" + R"({"type":"ai-title","other":1})" + "\n", {}},
      {older + "\n" + newer.substr(0, newer.size() - 3), {}},
      {older + "\n" + R"({"type": "ai-title","aiTitle":"spaced"})", "old"},
      {older + "\n" + R"({"type":"ai-title","aiTitle":7})", {}},
      {"", {}}};
  for (const auto& [bytes, title] : cases) {
    const auto line = newest(bytes, "ai-title", "aiTitle");
    EXPECT_EQ(line ? textMember(&*line, "aiTitle") : std::nullopt, title) << bytes;
  }
}

TEST(ClaudeFiles, OnlyAnObjectIsAnObjectAndItsNumbersAreWholeAndFit) {
  EXPECT_TRUE(jsonObject(R"( {"a": [1, {"b": null}]} )"));
  EXPECT_FALSE(jsonObject("{\"a\":" + std::string(1'000'000, '[')));
  for (const char* text : {"[1]", "null", "", "{\"a\":1", "{\"a\":1e999}", "{\"a\":\"\xFF\"}"})
    EXPECT_FALSE(jsonObject(text)) << text;
  for (const char* text :
       {"-1", "9223372036854775807", "9223372036854775808", "42.5", "\"42\"", "1,\"n\":[]"}) {
    const auto object = jsonObject(std::string("{\"n\":") + text + "}");
    const auto number = numberMember(&*object, "n");
    EXPECT_TRUE(number ? std::to_string(*number) == text : std::string_view(text).size() > 3) << text;
  }
}

TEST(ClaudeFiles, TimesNeedDateTimeAndZone) {
  const std::pair<const char*, double> cases[] = {
      {"2025-11-21T05:44:12.25Z", 1'763'703'852.25}, {"2025-11-21T05:44:12,5+00:00", 1'763'703'852.5},
      {"2025-11-21T07:44:12+02:00", 1'763'703'852},  {"2025-11-21T02:14:12-0330", 1'763'703'852},
      {"0001-01-01T00:00:00Z", -62'135'596'800},     {"9999-12-31T23:59:59Z", 253'402'300'799},
      {"2025-11-21T07:44:12+02", 1'763'703'852},     {"2024-02-29T23:59:59-23:59", 1'709'337'539}};
  for (const auto& [text, expected] : cases)
    EXPECT_NEAR(seconds(isoTime(text).value_or(Timestamp{})), expected, 1e-6) << text;
  for (const char* none :
       {"2025-11-21T05:44:12.Z", "2025-02-29T00:00:00Z", "2025-00-21T00:00:00Z", "2025-11-31T00:00:00Z",
        "2025-11-21T24:00:00Z", "2025-11-21T05:60:00Z", "2025-11-21T23:59:60Z", "2025-11-21T05:44:12",
        "2025-11-21T05:44:12+99:99", "2025-11-21T05:44:12Z and more", "2025-11-21 05:44:12Z",
        "999999999999-11-21T05:44:12Z", ""})
    EXPECT_EQ(isoTime(none), std::nullopt) << none;
}

const std::string titleLine = "{\"type\":\"ai-title\",\"aiTitle\":\"Fix the cart\"}\n";
const std::string prLine = "{\"type\":\"pr-link\",\"prNumber\":42,\"prRepository\":\"acme/shop\"}\n";

struct ClaudeReaderTest : testing::Test {
  std::string transcriptFile(const std::string& folder, const std::string& id, const std::string& text) {
    return home_.write(".claude/projects/" + folder + "/" + id + ".jsonl", text);
  }
  void session(Pid pid, const std::string& text) {
    home_.write(".claude/sessions/" + std::to_string(pid) + ".json", text);
  }
  void job(const std::string& name, const std::string& text) {
    home_.write(".claude/jobs/" + name + "/state.json", text);
  }

  TempFolder home_;
  DirectFiles files_;
  ClaudeReader reader_{home_.path(), files_};
};

TEST_F(ClaudeReaderTest, ASessionsTranscriptTellsTitleAndPullRequestAndOnceFoundStaysFound) {
  const ClaudeWork work{.title = "Fix the cart", .pr = 42, .prRepo = "acme/shop"};
  session(7, R"({"sessionId":"abc"})");
  EXPECT_EQ(reader_.claudeSession(7), ClaudeWork{}) << "no transcript yet";
  transcriptFile("a-project", "other", titleLine);
  const std::string path = transcriptFile("b-project", "abc", titleLine + prLine);
  home_.write(".claude/projects/stray file", "");
  EXPECT_EQ(reader_.claudeSession(7), ClaudeWork{}) << "it was missed once in this check";
  reader_.beginCheck();
  EXPECT_EQ(reader_.claudeSession(7), work);
  std::filesystem::remove(path);
  transcriptFile("q", "abc", titleLine);
  EXPECT_EQ(reader_.claudeSession(7), ClaudeWork{});
  session(2, R"({"id":"abc"})");
  session(3, R"({"sessionId":7})");
  session(5, "{\"sessionId\":\"abc\"" + std::string(1U << 20U, ' ') + "}");
  for (const Pid pid : {1, 2, 3, 5, -1}) EXPECT_EQ(reader_.claudeSession(pid), std::nullopt) << pid;
}

TEST_F(ClaudeReaderTest, OnlyTheLastMebibyteOfATranscriptIsRead) {
  // The title begins exactly where reading begins, and one byte before.
  const std::string rest((1U << 20U) - titleLine.size() - prLine.size(), '\n');
  transcriptFile("p", "whole", std::string(3'000'000, '\n') + titleLine + rest + prLine);
  transcriptFile("p", "cut", std::string(3'000'000, '\n') + titleLine + rest + "\n" + prLine);
  EXPECT_EQ(reader_.transcript("whole"),
            (ClaudeWork{.title = "Fix the cart", .pr = 42, .prRepo = "acme/shop"}));
  EXPECT_EQ(reader_.transcript("cut"), (ClaudeWork{.pr = 42, .prRepo = "acme/shop"}));
}

TEST_F(ClaudeReaderTest, LongNamesAreCutAndASessionIdIsAFileNameAndNothingElse) {
  const std::string text(200'000, 'n');
  const std::string longest(4'096, 'n');
  transcriptFile("p", "abc", R"({"type":"ai-title","aiTitle":")" + text + "\"}\n");
  job("j", R"({"sessionId":"abc","name":")" + text + R"(","state":")" + text + "\"}");
  const auto work = reader_.claudeJob(home_.at(".claude/jobs/j"));
  ASSERT_TRUE(work);
  EXPECT_EQ(std::tie(work->title, work->job, work->jobState), std::tuple(longest, longest, longest));
  for (const char* name : {"secret", "projects/p/..", "projects/p/", "projects/p/abc"})
    home_.write(".claude/" + std::string(name) + ".jsonl", titleLine);
  for (const std::string& id :
       Strings{"../../secret", "..", "", std::string("abc.jsonl\0x", 11), "/etc/passwd"})
    EXPECT_EQ(reader_.transcript(id), ClaudeWork{}) << id;
}

TEST_F(ClaudeReaderTest, AJobIsFoundFromAnyFolderInsideItsOwn) {
  transcriptFile("p", "abc", titleLine + prLine);
  job("j1", R"({"sessionId":"abc","name":"Nightly","state":"running","cwd":"/w",
               "updatedAt":"2025-11-21T05:44:12.500Z"})");
  const Timestamp updated = timestamp(1'763'703'852.5);
  const ClaudeWork expected{"Fix the cart", 42, "acme/shop", "Nightly", "running", updated, "/w"};
  const std::string jobs = home_.at(".claude/jobs");
  for (const char* inside : {"/j1", "/j1/", "//j1//a/b"})
    EXPECT_EQ(reader_.claudeJob(jobs + inside), expected) << inside;
  for (const char* place : {".claude/state.json", ".claude/jobs/state.json"})
    home_.write(place, R"({"name":"out"})");
  job("broken", "{");
  for (const char* outside : {"", "/", "//", "/j2", "/..", "/.", "2/j1", "/broken"})
    EXPECT_EQ(reader_.claudeJob(jobs + outside), std::nullopt) << outside;
  EXPECT_EQ(reader_.claudeJob("/tmp"), std::nullopt);
  job("odd", R"({"name":7,"state":null,"updatedAt":"soon"})");
  EXPECT_EQ(reader_.claudeJob(jobs + "/odd"), ClaudeWork{}) << "every field may be missing";
}

}  // namespace
