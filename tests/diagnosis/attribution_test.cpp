#include "diagnosis/attribution.h"

#include <gmock/gmock.h>

#include "records/utf8.h"
#include "tests/support/fake_surroundings.h"
#include "tests/support/machines.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(StartedBy, SaysWhoAndForWhat) {
  FakeSurroundings around;
  around.titles["o/r#7"] = "Add tax";
  const std::optional<ClaudeWork> none;
  // Nobody: what started it is gone.
  const std::tuple<const char*, double, std::optional<ClaudeWork>, const char*> cases[] = {
      {"", 13 * 3600.0, none, "It started 13 hours ago. The app or terminal that started it is closed."},
      {"you", 59.9, none, "You started it in a terminal 59 seconds ago."},
      {"Terminal", 7200, none, "Terminal started it 2 hours ago."},
      {"Claude Code", 43, ClaudeWork{.pr = 42}, "Claude Code started it 43 seconds ago (pull request #42)."},
      {"Claude Code", 43, ClaudeWork{.title = "Taxes", .pr = 8, .prRepo = "o/r"},
       "Claude Code started it 43 seconds ago, in a session about “Taxes” (pull request #8)."},
      {"Claude Code", 43, ClaudeWork{.title = "Taxes", .pr = 7, .prRepo = "o/r"},
       "Claude Code started it 43 seconds ago, in a session about “Taxes”, for the pull request “Add tax”."},
      {"Claude Code", 43, ClaudeWork{.prRepo = "o/r"}, "Claude Code started it 43 seconds ago."},
      {"you", 43, ClaudeWork{.title = "Taxes", .pr = 9, .prRepo = "o/r"},
       "You started it in a terminal 43 seconds ago."},
  };
  for (const auto& [who, age, work, sentence] : cases) {
    Starter start;
    if (*who != '\0') start.who = who;
    EXPECT_EQ(startedBy(start, age, work, around), sentence);
  }
  EXPECT_THAT(around.asked, ElementsAre("title o/r#8", "title o/r#7"));
}

TEST(Facts, AddWhatIsKnown) {
  const Git git{"shop", "main", "Fix it", "1 day ago", false, {}};
  const Git copy{"shop", "fix/x", "", "", true, {}};
  EXPECT_EQ(facts({}, {}, {}, {}), "");
  EXPECT_EQ(facts("you", git, ClaudeWork{.pr = 1}, {"One", "Two"}),
            "One\nTwo\nStarted by: you\nGit repo shop, branch main. Last commit: Fix it");
  EXPECT_EQ(facts("Claude Code", copy, ClaudeWork{.title = "Tax"}, {}),
            "Started by: Claude Code\nClaude Code session title: Tax\n"
            "Git repo shop, branch fix/x (a separate copy of the repo).");
}

TEST(CommandLine, IsOneLineOfWords) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"/usr/bin/make", "-j8", "all"}, "make -j8 all"},
      {{"sh", "-c", "\n a\t b\r\n\vc  ", "", "d"}, "sh -c a b c d"},
      {{"say", "a\u00A0b\u2003\u3000c\u2028d\u0085e"}, "say a b c d e"},
      {{"say", "🦊 ünï", "a\u200Bb"}, "say 🦊 ünï a\u200Bb"},  // a zero-width space is no white space
      {{"\t"}, ""},
  };
  for (const auto& [args, line] : cases) EXPECT_EQ(commandLine({.path = "/bin/x", .args = args}), line);
  EXPECT_EQ(commandLine({.path = "/bin/x y"}), "x y");
}

TEST(ProjectRoot, IsBelowTheHomeDirectory) {
  FakeSurroundings around;
  around.who.home = "/Users/ünï";  // 10 characters, 12 bytes
  around.present = {"/.git",
                    "/Users/.git",
                    "/Users/ünï/.git",
                    "/Users/ünï/code/shop/.git",
                    "/Users/ünï-outside/.git",
                    "/srv/shorty/.git",
                    "/srv/short/.git"};
  const std::pair<const char*, const char*> cases[] = {
      {"/Users/ünï/code/shop/api/src", "/Users/ünï/code/shop"},
      {"/Users/ünï/code/shopping", "/Users/ünï/code/shopping"},
      {"/Users/ünï/notes/a", "/Users/ünï/notes/a"},  // the home directory is no project
      {"/Users/ünï", "/Users/ünï"},
      {"/Users/ünï-outside/a", "/Users/ünï-outside"},
      {"/srv/shorty/ab", "/srv/shorty"},   // 11 characters
      {"/srv/short/ab", "/srv/short/ab"},  // 10 characters: as short as the home directory
      {"", ""},
      {"relative-directory", "relative-directory"},
  };
  for (const auto& [path, root] : cases) EXPECT_EQ(projectRoot(path, around), root);

  around.asked.clear();
  EXPECT_EQ(projectRoot("/Users/ünï/Library/Caches/x", around), "/Users/ünï/Library/Caches/x");
  EXPECT_THAT(around.asked, IsEmpty()) << "nothing is looked for in the Library";
  EXPECT_EQ(projectRoot("/Users/ünï/Library2/x", around), "/Users/ünï/Library2/x");
  EXPECT_THAT(around.asked,
              ElementsAre("exists /Users/ünï/Library2/x/.git", "exists /Users/ünï/Library2/.git"));
}

TEST(Stop, ForcesWhatWasAskedBefore) {
  Snapshot m = machine();
  const Proc& proc = add(m, 41, 1, {"node"});
  EXPECT_EQ(stop(proc, {40, 42}, "Close it"), (Action{"Close it", {Signal{41, 15, proc.started}}}));
  EXPECT_EQ(stop(proc, {40, 41}, "Close it"), (Action{"Force quit", {Signal{41, 9, proc.started}}}));
}

TEST(ScriptHead, ShowsTheScriptThatRuns) {
  FakeSurroundings around;
  around.heads = {{"/w/train.py", "import x"}, {"/opt/a.sh", "#!/bin/sh\n"}, {"/w/b.ts", ""}};
  // The head is empty where there is none.
  const std::tuple<const char*, std::vector<std::string>, const char*> cases[] = {
      {"/w", {"python3", "-u", "train.py", "b.ts"}, "The file train.py starts with:\nimport x"},
      {"/w", {"sh", "/opt/a.sh"}, "The file /opt/a.sh starts with:\n#!/bin/sh\n"},
      {"/w", {"deno", "run", "--x.py", "b.ts"}, "The file b.ts starts with:\n"},
      {"/w", {"train.py"}, ""},
      {"/w", {"python3", "gone.py", "train.py"}, ""},  // only the first one is tried
      {"/Users/x/Library/w", {"sh", "/opt/a.sh"}, ""},
      {"/w", {"sh", "/Users/x/Library/a.sh"}, ""},
  };
  for (const auto& [cwd, args, head] : cases) {
    EXPECT_EQ(scriptHead({.args = args, .cwd = cwd}, around).value_or(""), head);
  }
  EXPECT_THAT(around.asked,
              ElementsAre("head /w/train.py", "head /opt/a.sh", "head /w/b.ts", "head /w/gone.py"));
}

}  // namespace
}  // namespace tarnwick
