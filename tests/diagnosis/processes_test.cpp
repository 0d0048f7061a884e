#include "diagnosis/attribution.h"
#include "diagnosis/process_kinds.h"
#include "diagnosis/process_tree.h"
#include "tests/support/machines.h"

namespace {

TEST(Kinds, AreToldByTheFirstWordThatIsFound) {
  std::string work;
  for (const char* command : {"make test-cov", "pip fetch latest", "npm run BUILD", "npm install && webpack",
                              "uv sync --all", "uv  sync", ""})
    work.append(workKind(command).value_or("-")).append(". ");
  EXPECT_EQ(work, "tests. tests. a build. a build. a package install. -. -. ");
  std::string databases;
  for (const char* text :
       {"postgres:17", "bitnami/MariaDB", "mariadb-for-mysql", "redis-mongo", "mongo:7", "nginx", ""})
    databases += std::string(dbKind(text)) + " ";
  EXPECT_EQ(databases, "Postgres MariaDB MySQL Redis MongoDB container container ");
}

TEST(ServerKind, NamesTheToolThatServes) {
  const std::string longest = std::string(100, 'n') + " server";
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"python3", "-m", "uvicorn", "app:app"}, "Python API"},
      {{"python3.11", "Flask", "run"}, "Python server"},  // no runtime by that name: no script either
      {{"python3", "-u", "/opt/bin/Flask", "run"}, "Python API"},
      {{"node", "-m"}, "Node server"},  // nothing follows
      {{"ruby", "bin/rails", "s"}, "Rails app"},
      {{"caddy", "-m", "VITE"}, "Vite dev server"},
      {{""}, " server"},
      {{"/opt/" + std::string(101, 'n')}, longest.c_str()}};
  for (const auto& [args, kind] : cases) EXPECT_EQ(serverKind({.args = args}), kind) << args.front();
  EXPECT_EQ(serverKind({.path = "/usr/local/bin/node"}), "Node server");
}

std::vector<Pid> pids(const std::vector<const Proc*>& procs) {
  std::vector<Pid> all;
  for (const Proc* proc : procs) all.push_back(proc->pid);
  return all;
}

// Of each process the root of its work, who started it (nobody: gone), and the pid of `claude`.
std::string startsOf(const Snapshot& m, const std::vector<Pid>& asked) {
  std::string told;
  Starters shared(m);
  for (const Pid pid : asked) {
    const Starter start = shared.of(m.procs.at(pid));
    const Starter alone = starter(m.procs.at(pid), m);
    EXPECT_EQ(std::tie(start.root, start.who, start.claude), std::tie(alone.root, alone.who, alone.claude))
        << pid;
    told += std::to_string(pid) + ": " + std::to_string(start.root->pid) + " " + start.who.value_or("nobody");
    told += start.claude ? " " + std::to_string(*start.claude) + ". " : ". ";
  }
  return told;
}

TEST(Starter, ClimbsToWhatStartedTheWork) {
  Snapshot m = machine();
  // 32 is a terminal's own shell, whatever it carries out; the parent of 41 is gone, the name of 60 does not
  // matter; in the list or not, process 1 starts nothing.
  addAll(m, R"(2 1 -zsh, 3 2 zsh -c start, 4 3 /bin/node a.js, 5 4 sh -c worker, 6 5 node b.js, 31 30 tcsh,
      40 1 python3, 32 30 -zsh -c make, 33 32 make, 10 2 /opt/homebrew/bin/claude, 11 10 zsh -c make,
      12 11 make, 41 999 bash, 50 60 claude, 60 1 launcher, 1 0 -launchd)");
  addApp(m, 30, "Terminal").ppid = 0;
  m.procs[70] = {.pid = 70, .ppid = 71, .path = "/usr/bin/-bash"};
  m.procs[71] = {.pid = 71, .ppid = 1, .path = "/bin/claude"};  // no arguments: named by its path
  EXPECT_EQ(
      startsOf(m, {4, 6, 12, 10, 31, 33, 40, 41, 50, 2, 70}),
      "4: 4 you. 6: 4 you. 12: 12 Claude Code 10. 10: 10 you. 31: 31 Terminal. 33: 33 you. 40: 40 nobody. "
      "41: 41 nobody. 50: 60 nobody. 2: 2 nobody. 70: 70 Claude Code 71. ");
}

TEST(Starter, KnowsSessionsWhereTheyAreTold) {
  Snapshot m = machine();
  const std::pair<Pid, const char*> sessions[] = {
      {10, "10 9 display-session, 11 10 make, 12 11 cc1"},  // its parent is somebody else's
      {20, "20 1 sway, 21 20 sh, 22 21 rsync"},
      {30, "30 20 bash, 31 30 npm"},
      {32, "32 31 node, 33 32 esbuild"},  // left for a session of its own
      {40, "40 1 postgres"},
      {41, "41 40 postgres"},
      {51, "51 50 bash -c node, 52 51 node a.js"},
      {53, "53 50 bash, 54 53 bash -c make, 55 54 make"},
      {60, "60 1 make, 61 60 cc1"}};  // leads a session and its own jobs
  for (const auto& [session, text] : sessions) {
    addAll(m, text);
    for (auto& [pid, proc] : m.procs) proc.session = proc.session == 0 ? session : proc.session;
  }
  addApp(m, 50, "Editor").session = 50;
  for (const Pid shell : {30, 51, 53}) m.procs[shell].terminalShell = true;
  EXPECT_EQ(startsOf(m, {12, 11, 22, 32, 33, 31, 30, 41, 52, 55, 61}),
            "12: 11 nobody. 11: 11 nobody. 22: 22 nobody. 32: 32 you. 33: 32 you. 31: 31 you. 30: 30 nobody. "
            "41: 40 nobody. 52: 52 Editor. 55: 55 you. 61: 60 nobody. ");
}

TEST(Starter, EndsOnCycles) {
  Snapshot m = machine();
  addAll(m, "2 2 node, 3 4 zsh, 4 3 bash, 5 6 make, 6 7 sh, 7 5 node");
  for (const auto& [pid, proc] : m.procs) EXPECT_FALSE(starter(proc, m).who) << pid;
  EXPECT_EQ(starter(m.procs.at(5), m).root->pid, 7) << "the last one that is no shell before it comes round";
}

TEST(Descendants, ChildrenFirstThenTheSubtreeOfEach) {
  Snapshot m = machine();
  for (const auto& [pid, ppid] : {std::pair{2, 1}, {9, 2}, {3, 2}, {4, 3}, {5, 9}, {6, 3}, {7, 4}, {8, 99}})
    add(m, pid, ppid, {"x"}).footprint = 1ULL << static_cast<unsigned>(pid);
  m.index();
  EXPECT_THAT(pids(descendants(2, m)), ElementsAre(3, 9, 4, 6, 7, 5));
  EXPECT_THAT(pids(descendants(7, m)), IsEmpty());
  EXPECT_THAT(pids(descendants(99, m)), ElementsAre(8)) << "a parent that is gone still has children";
  m.procs.erase(4);
  EXPECT_THAT(pids(descendants(2, m)), ElementsAre(3, 9, 6, 5)) << "what is not there hides what hangs below";
  TreeMemory memory(m);
  EXPECT_EQ(memory.of(m.procs.at(3)), 0b1001000U);
  for (int asked : {1, 2}) EXPECT_EQ(memory.of(m.procs.at(2)), 0b1001101100U) << asked;
}

TEST(Descendants, EndOnCyclesAndSurviveDepth) {
  Snapshot m = machine();
  for (const auto& [pid, ppid] : {std::pair{2, 4}, {3, 2}, {4, 3}, {5, 3}, {6, 6}})
    add(m, pid, ppid, {"x"}).footprint = 1;
  m.index();
  EXPECT_THAT(pids(descendants(2, m)), ElementsAre(3, 4, 5));
  EXPECT_THAT(pids(descendants(6, m)), IsEmpty());
  TreeMemory memory(m);
  for (const Pid pid : {2, 3, 4}) EXPECT_EQ(memory.of(m.procs.at(pid)), 4U) << "the whole ring, and 5";
  for (const Pid pid : {5, 6}) EXPECT_EQ(memory.of(m.procs.at(pid)), 1U);

  Snapshot deep = machine();
  for (Pid pid = 2; pid < 50'000; ++pid) add(deep, pid, pid - 1, {"sh"}).footprint = 1;
  deep.index();
  EXPECT_EQ(descendants(2, deep).size(), 49'997U);
  EXPECT_EQ(TreeMemory(deep).of(deep.procs.at(2)), 49'998U);
  Starters starters(deep);
  EXPECT_EQ(starters.of(deep.procs.at(49'999)).root->pid, 2) << "only shells: the highest of them";
}

TEST(StartedBy, SaysWhoAndForWhat) {
  FakeSurroundings around;
  around.titles["o/r#7"] = "Add tax";
  const std::optional<ClaudeWork> none;
  // Nobody: what started it is gone.
  const std::tuple<const char*, double, std::optional<ClaudeWork>, const char*> cases[] = {
      {"", 13 * 3600.0, none, "It started 13 hours ago. The app or terminal that started it is closed."},
      {"you", 59.9, none, "You started it in a terminal 59 seconds ago."},
      {"Terminal", 7200, none, "Terminal started it 2 hours ago."},
      {"Claude Code", 43, ClaudeWork{.pr = 8, .prRepo = "o/r"},
       "Claude Code started it 43 seconds ago (pull request #8)."},
      {"Claude Code", 43, ClaudeWork{.title = "Taxes", .pr = 7, .prRepo = "o/r"},
       "Claude Code started it 43 seconds ago, in a session about “Taxes”, for the pull request “Add tax”."},
      {"you", 43, ClaudeWork{.title = "Taxes", .pr = 9, .prRepo = "o/r"},
       "You started it in a terminal 43 seconds ago."}};
  for (const auto& [who, age, work, sentence] : cases) {
    Starter start;
    if (*who != '\0') start.who = who;
    EXPECT_EQ(startedBy(start, age, work, around), sentence);
  }
  EXPECT_THAT(around.asked, ElementsAre("title o/r#8", "title o/r#7"));
}

TEST(CommandLine, IsOneLineOfWords) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"/usr/bin/make", "-j8", "all"}, "make -j8 all"},
      {{"sh", "-c", "\n a\t b\r\n\vc  ", "", "d"}, "sh -c a b c d"},
      {{"say", "a\u00A0b\u2003\u3000c\u2028d\u0085e"}, "say a b c d e"},
      {{"say", "🦊 ünï", "a\u200Bb"}, "say 🦊 ünï a\u200Bb"},  // a zero-width space is no white space
      {{"\t"}, ""}};
  for (const auto& [args, line] : cases) EXPECT_EQ(commandLine({.path = "/bin/x", .args = args}), line);
  EXPECT_EQ(commandLine({.path = "/bin/x y"}), "x y");
}

TEST(ProjectRoot, IsBelowTheHomeDirectory) {
  FakeSurroundings around;
  around.who.home = "/Users/ünï";  // 10 characters, 12 bytes
  for (const std::string repository : {"", "/Users", "/Users/ünï", "/Users/ünï/code/shop",
                                       "/Users/ünï-outside", "/srv/shorty", "/srv/short"})
    around.present.insert(repository + "/.git");
  // The home directory is no project; /srv/short is as short as that, 10 characters.
  const std::pair<const char*, const char*> inside[] = {
      {"/Users/ünï/code/shop", "/api/src"}, {"/Users/ünï-outside", "/a"}, {"/srv/shorty", "/ab"}};
  for (const auto& [root, below] : inside) EXPECT_EQ(projectRoot(root + std::string(below), around), root);
  for (const char* itself : {"/Users/ünï/code/shopping", "/Users/ünï/notes/a", "/Users/ünï", "/srv/short/ab",
                             "", "relative-directory"})
    EXPECT_EQ(projectRoot(itself, around), itself);
  around.asked.clear();
  EXPECT_EQ(projectRoot("/Users/ünï/Library/Caches/x", around), "/Users/ünï/Library/Caches/x");
  EXPECT_THAT(around.asked, IsEmpty()) << "nothing is looked for in the Library";
  EXPECT_EQ(projectRoot("/Users/ünï/Library2/x", around), "/Users/ünï/Library2/x");
  EXPECT_THAT(around.asked,
              ElementsAre("exists /Users/ünï/Library2/x/.git", "exists /Users/ünï/Library2/.git"));
  around.inTime = false;
  EXPECT_EQ(projectRoot("/srv/shorty/ab", around), "/srv/shorty/ab") << "no ancestor is looked at in vain";
}

TEST(ScriptHead, ShowsTheScriptThatRuns) {
  FakeSurroundings around;
  around.heads = {{"/opt/a.sh", "#!/bin/sh\n"}, {"/w/b.ts", ""}};
  // The head is empty where there is none.
  const std::tuple<const char*, std::vector<std::string>, const char*> cases[] = {
      {"/w", {"sh", "/opt/a.sh", "train.py"}, "The file /opt/a.sh starts with:\n#!/bin/sh\n"},
      {"/w", {"deno", "run", "--x.py", "b.ts"}, "The file b.ts starts with:\n"},
      {"/w", {"train.py"}, ""},
      {"/w", {"python3", "gone.py", "train.py"}, ""},  // only the first one is tried
      {"/Users/x/Library/w", {"sh", "/opt/a.sh"}, ""},
      {"/w", {"sh", "/Users/x/Library/a.sh"}, ""}};
  for (const auto& [cwd, args, head] : cases)
    EXPECT_EQ(scriptHead({.args = args, .cwd = cwd}, around).value_or(""), head);
  EXPECT_THAT(around.asked, ElementsAre("head /opt/a.sh", "head /w/b.ts", "head /w/gone.py"));
}

}  // namespace
