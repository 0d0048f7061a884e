#include <gtest/gtest.h>

#include "context/git_reader.h"
#include "tests/support/fake_clock.h"
#include "tests/support/recording_tool_runner.h"
#include "tests/support/temp_folder.h"

namespace tarnwick {
namespace {

using Words = std::vector<std::string>;

// A repository laid by hand, and tools that exist but are never really run.
class GitCacheTest : public testing::Test {
 protected:
  void SetUp() override { ::unsetenv("TARNWICK_NO_TOOLS"); }

  ToolCandidates tools() const {
    ToolCandidates candidates;
    candidates.git = {folder_.script("git", "exit 1")};
    candidates.gh = {folder_.script("gh", "exit 1")};
    return candidates;
  }

  TempFolder folder_;
  std::string home_ = folder_.at("home");
  std::string project_ = folder_.at("home/project");
  RecordingToolRunner runner_;
  ToolPlaces places_{tools()};
  FakeClock clock_;
  GitReader reader_{runner_, places_, clock_, home_, [] { return false; }};
  GitReader askingReader_{runner_, places_, clock_, home_, [] { return true; }};
};

TEST_F(GitCacheTest, AnAnswerIsGoodForLessThanFiveMinutes) {
  folder_.write("home/project/.git/HEAD", "ref: refs/heads/main\n");
  runner_.answer.output = "3 hours ago\nAdd a thing\n";
  const auto first = reader_.git(project_);
  ASSERT_TRUE(first);
  EXPECT_EQ(*first, (Git{"project", "main", "Add a thing", "3 hours ago", false, std::nullopt}));
  const Words asked = {folder_.at("git"), "-C", project_, "log", "-1", "--format=%cr%n%s"};
  EXPECT_EQ(runner_.calls, std::vector<Words>{asked});

  folder_.write("home/project/.git/HEAD", "ref: refs/heads/other\n");
  clock_.turn(299);
  EXPECT_EQ(reader_.git(project_), first);
  EXPECT_EQ(runner_.calls.size(), 1U);
  clock_.turn(1);
  EXPECT_EQ(reader_.git(project_)->branch, "other");
  EXPECT_EQ(runner_.calls.size(), 2U);
  clock_.turn(-3600);  // a clock that was set back does not freeze the answer
  reader_.git(project_);
  EXPECT_EQ(runner_.calls.size(), 3U);
}

TEST_F(GitCacheTest, AnAbsentAnswerIsKeptJustAsLong) {
  EXPECT_EQ(reader_.git(project_), std::nullopt);
  folder_.write("home/project/.git/HEAD", "ref: refs/heads/main\n");
  clock_.turn(299);
  EXPECT_EQ(reader_.git(project_), std::nullopt);
  clock_.turn(1);
  EXPECT_TRUE(reader_.git(project_));
}

TEST_F(GitCacheTest, TheLibraryOfTheHomeIsNeverRead) {
  folder_.write("home/Library/x/.git/HEAD", "ref: refs/heads/main\n");
  folder_.write("home/Library2/.git/HEAD", "ref: refs/heads/main\n");
  EXPECT_EQ(reader_.git(home_ + "/Library/x"), std::nullopt);
  EXPECT_EQ(reader_.git("."), std::nullopt) << "only an absolute path is a folder";
  EXPECT_TRUE(runner_.calls.empty());
  EXPECT_TRUE(reader_.git(home_ + "/Library2"));
}

TEST_F(GitCacheTest, OutputOfGitIsTakenLineByLine) {
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"\n 2 days ago\nSubject \n\n", "2 days ago", "Subject"},
      {"2 days ago\n", "2 days ago", ""},
      {"", "", ""},
  };
  folder_.write("home/project/.git/HEAD", "ref: refs/heads/main\n");
  for (const auto& [output, ago, subject] : cases) {
    runner_.answer.output = output;
    const auto git = reader_.readGit(project_);
    ASSERT_TRUE(git);
    EXPECT_EQ(git->lastCommitAgo, ago) << output;
    EXPECT_EQ(git->lastCommit, subject) << output;
  }
}

TEST_F(GitCacheTest, TitlesAreNeverAskedForUnlessTheUserWantsThem) {
  runner_.answer.output = "A title\n";
  EXPECT_EQ(reader_.prTitle("acme/shop", "42"), std::nullopt);
  EXPECT_EQ(askingReader_.prTitle(std::nullopt, "42"), std::nullopt);
  EXPECT_EQ(askingReader_.prTitle("acme/shop", std::nullopt), std::nullopt);
  EXPECT_EQ(askingReader_.prTitle("acme/shop", "--web"), std::nullopt) << "an option, not a branch";
  EXPECT_EQ(askingReader_.prTitle("-x/shop", "42"), std::nullopt);
  ToolPlaces none{ToolCandidates{}};
  EXPECT_EQ(GitReader(runner_, none, clock_, home_, [] { return true; }).prTitle("acme/shop", "42"),
            std::nullopt);
  EXPECT_TRUE(runner_.calls.empty());
}

TEST_F(GitCacheTest, ATitleIsAskedForOncePerRun) {
  runner_.answer.output = " Fix the “cart”\n";
  EXPECT_EQ(askingReader_.prTitle("acme/shop", "42"), "Fix the “cart”");
  const Words asked = {folder_.at("gh"), "pr",     "view",  "42",   "--repo",
                       "acme/shop",      "--json", "title", "--jq", ".title"};
  EXPECT_EQ(runner_.calls, std::vector<Words>{asked});

  runner_.answer.output = " \n";
  EXPECT_EQ(askingReader_.prTitle("acme/shop", "4"), std::nullopt);
  EXPECT_EQ(runner_.calls.size(), 2U);
  runner_.answer.output = "Too late";
  clock_.turn(1e6);
  EXPECT_EQ(askingReader_.prTitle("acme/shop", "42"), "Fix the “cart”");
  EXPECT_EQ(askingReader_.prTitle("acme/shop", "4"), std::nullopt);
  EXPECT_EQ(runner_.calls.size(), 2U);
}

}  // namespace
}  // namespace tarnwick
