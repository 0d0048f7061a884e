#include "context/claude_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/support/temp_folder.h"

namespace tarnwick {
namespace {

const std::string titleLine = R"({"type":"ai-title","aiTitle":"Fix the cart"})"
                              "\n";
const std::string prLine = R"({"type":"pr-link","prNumber":42,"prRepository":"acme/shop"})"
                           "\n";

class ClaudeReaderTest : public testing::Test {
 protected:
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
  ClaudeReader reader_{home_.path()};
};

TEST_F(ClaudeReaderTest, ASessionsTranscriptTellsTitleAndPullRequest) {
  session(7, R"({"sessionId":"abc"})");
  transcriptFile("a-project", "other", titleLine);
  transcriptFile("b-project", "abc", titleLine + prLine);
  home_.write(".claude/projects/stray file", "");
  EXPECT_EQ(reader_.claudeSession(7), (ClaudeWork{.title = "Fix the cart", .pr = 42, .prRepo = "acme/shop"}));
}

TEST_F(ClaudeReaderTest, ASessionFileThatSaysNothingGivesNoRecord) {
  EXPECT_EQ(reader_.claudeSession(1), std::nullopt);
  session(2, R"({"id":"abc"})");
  session(3, R"({"sessionId":7})");
  session(5, "{\"sessionId\":\"abc\"" + std::string(1U << 20U, ' ') + "}");
  for (const Pid pid : {2, 3, 5, -1}) EXPECT_EQ(reader_.claudeSession(pid), std::nullopt) << pid;
}

TEST_F(ClaudeReaderTest, OnlyTheLastMebibyteOfATranscriptIsRead) {
  constexpr std::size_t mebibyte = 1U << 20U;
  const std::string filler = R"({"type":"user","text":")" + std::string(1'000, 'x') + "\"}\n";
  std::string late;
  while (late.size() < mebibyte) late += filler;
  std::string early = titleLine;
  while (early.size() < 4 * mebibyte) early += filler;
  transcriptFile("p", "early", early + late + prLine);
  EXPECT_EQ(reader_.transcript("early").title, std::nullopt);
  EXPECT_EQ(reader_.transcript("early").pr, 42);

  // The line begins exactly where reading begins, and one byte before.
  const std::string rest(mebibyte - titleLine.size(), '\n');
  transcriptFile("p", "whole", early + titleLine + rest);
  transcriptFile("p", "cut", early + titleLine + rest + "\n");
  EXPECT_EQ(reader_.transcript("whole").title, "Fix the cart");
  EXPECT_EQ(reader_.transcript("cut").title, std::nullopt);
}

TEST_F(ClaudeReaderTest, ATranscriptOnceFoundStaysFound) {
  EXPECT_EQ(reader_.transcript("abc").title, std::nullopt);
  const std::string path = transcriptFile("p", "abc", titleLine);
  EXPECT_EQ(reader_.transcript("abc").title, "Fix the cart");
  std::filesystem::remove(path);
  transcriptFile("q", "abc", titleLine);
  EXPECT_EQ(reader_.transcript("abc").title, std::nullopt);
}

TEST_F(ClaudeReaderTest, ASessionIdIsAFileNameAndNothingElse) {
  home_.write(".claude/secret.jsonl", titleLine);
  home_.write(".claude/projects/p/...jsonl", titleLine);
  home_.write(".claude/projects/p/.jsonl", titleLine);
  transcriptFile("p", "abc", titleLine);
  const std::string nul("abc.jsonl\0x", 11);
  for (const std::string& id :
       {std::string("../../secret"), std::string(".."), std::string(), nul, std::string("/etc/passwd")}) {
    EXPECT_EQ(reader_.transcript(id), ClaudeWork{}) << id;
  }
}

TEST_F(ClaudeReaderTest, AJobIsFoundFromAnyFolderInsideItsOwn) {
  transcriptFile("p", "abc", titleLine + prLine);
  job("j1", R"({"sessionId":"abc","name":"Nightly","state":"running","cwd":"/w",
               "updatedAt":"2025-11-21T05:44:12.500Z"})");
  const ClaudeWork expected{.title = "Fix the cart",
                            .pr = 42,
                            .prRepo = "acme/shop",
                            .job = "Nightly",
                            .jobState = "running",
                            .jobUpdated = timestamp(1'763'703'852.5),
                            .jobDir = "/w"};
  const std::string jobs = home_.at(".claude/jobs");
  for (const char* inside : {"/j1", "/j1/", "//j1//a/b"}) {
    EXPECT_EQ(reader_.claudeJob(jobs + inside), expected) << inside;
  }
  home_.write(".claude/state.json", R"({"name":"outside"})");
  home_.write(".claude/jobs/state.json", R"({"name":"outside"})");
  for (const char* outside : {"", "/", "//", "/j2", "/..", "/.", "2/j1"}) {
    EXPECT_EQ(reader_.claudeJob(jobs + outside), std::nullopt) << outside;
  }
  EXPECT_EQ(reader_.claudeJob("/tmp"), std::nullopt);
}

TEST_F(ClaudeReaderTest, EveryFieldOfAJobMayBeMissing) {
  job("odd", R"({"name":7,"state":null,"updatedAt":"soon"})");
  EXPECT_EQ(reader_.claudeJob(home_.at(".claude/jobs/odd")), ClaudeWork{});
  job("broken", "{");
  EXPECT_EQ(reader_.claudeJob(home_.at(".claude/jobs/broken")), std::nullopt);
}

}  // namespace
}  // namespace tarnwick
