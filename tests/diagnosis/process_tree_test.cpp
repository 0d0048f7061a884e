#include "diagnosis/process_tree.h"

#include <gmock/gmock.h>

#include "tests/support/machines.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<Pid> pids(const std::vector<const Proc*>& procs) {
  std::vector<Pid> all;
  all.reserve(procs.size());
  for (const Proc* proc : procs) all.push_back(proc->pid);
  return all;
}

TEST(Starter, ClimbsToWhatStartedTheWork) {
  Snapshot m = machine();
  add(m, 2, 1, {"-zsh"});  // a login shell
  add(m, 3, 2, {"zsh", "-c", "npm start"});
  add(m, 4, 3, {"/usr/local/bin/node", "a.js"});
  add(m, 5, 4, {"sh", "-c", "worker"});
  add(m, 6, 5, {"node", "b.js"});
  add(m, 10, 2, {"/opt/homebrew/bin/claude"});
  add(m, 11, 10, {"zsh", "-c", "make"});
  add(m, 12, 11, {"make"});
  addApp(m, 30, "Terminal").ppid = 0;
  add(m, 31, 30, {"tcsh"});
  add(m, 40, 1, {"python3"});
  add(m, 41, 999, {"bash"});   // its parent is gone
  add(m, 50, 60, {"claude"});  // its own name does not matter
  add(m, 60, 1, {"launcher"});
  add(m, 1, 0, {"-launchd"});  // in the list or not, process 1 starts nothing
  m.procs[70] = {.pid = 70, .ppid = 71, .path = "/usr/bin/-bash"};
  m.procs[71] = {.pid = 71, .ppid = 1, .path = "/bin/claude"};  // no arguments: named by its path

  const struct {
    Pid pid;
    Pid root;
    const char* who;  // empty: gone
    Pid claude;       // 0: none
  } cases[] = {
      {4, 4, "you", 0},
      {6, 4, "you", 0},
      {12, 12, "Claude Code", 10},
      {10, 10, "you", 0},
      {31, 31, "Terminal", 0},
      {40, 40, "", 0},
      {41, 41, "", 0},
      {50, 60, "", 0},
      {2, 2, "", 0},
      {70, 70, "Claude Code", 71},
  };
  Starters shared(m);
  for (const auto& [pid, root, who, claude] : cases) {
    for (const Starter& start : {starter(m.procs.at(pid), m), shared.of(m.procs.at(pid))}) {
      EXPECT_EQ(start.root->pid, root) << pid;
      EXPECT_EQ(start.who.value_or(""), who) << pid;
      EXPECT_EQ(start.claude.value_or(0), claude) << pid;
    }
  }
}

TEST(Starter, EndsOnCycles) {
  Snapshot m = machine();
  add(m, 2, 2, {"node"});  // its own parent
  add(m, 3, 4, {"zsh"});
  add(m, 4, 3, {"bash"});
  add(m, 5, 6, {"make"});
  add(m, 6, 7, {"sh"});
  add(m, 7, 5, {"node"});
  for (const Pid pid : {2, 3, 4, 5, 6, 7}) {
    const Starter start = starter(m.procs.at(pid), m);
    EXPECT_FALSE(start.who) << pid;
    EXPECT_TRUE(m.procs.contains(start.root->pid)) << pid;
  }
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
  EXPECT_EQ(memory.of(m.procs.at(2)), 0b1001101100U) << "with a part that was added up before";
  EXPECT_EQ(memory.of(m.procs.at(2)), 0b1001101100U);
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
  EXPECT_EQ(memory.of(m.procs.at(5)), 1U);
  EXPECT_EQ(memory.of(m.procs.at(6)), 1U);

  Snapshot deep = machine();
  for (Pid pid = 2; pid < 50'000; ++pid) add(deep, pid, pid - 1, {"sh"}).footprint = 1;
  deep.index();
  EXPECT_EQ(descendants(2, deep).size(), 49'997U);
  EXPECT_EQ(TreeMemory(deep).of(deep.procs.at(2)), 49'998U);
  Starters starters(deep);
  EXPECT_EQ(starters.of(deep.procs.at(49'999)).root->pid, 2) << "only shells: the highest of them";
}

}  // namespace
}  // namespace tarnwick
