#include "records/snapshot.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

Proc named(std::string path, std::vector<std::string> args) {
  Proc proc;
  proc.path = std::move(path);
  proc.args = std::move(args);
  return proc;
}

TEST(Snapshot, NameIsTheLastComponentOfTheFirstArgumentElseOfThePath) {
  EXPECT_EQ(named("/usr/bin/python3.11", {"/opt/venv/bin/python", "x.py"}).name(), "python");
  EXPECT_EQ(named("/usr/bin/node", {}).name(), "node");
  EXPECT_EQ(named("/usr/bin/node", {"-zsh"}).name(), "-zsh");
  EXPECT_EQ(named("/usr/bin/node", {""}).name(), "");
  EXPECT_EQ(named("/usr/bin/", {}).name(), "");
  EXPECT_EQ(named("", {}).name(), "");
}

TEST(Snapshot, IndexListsChildrenUnderEveryParentAndStartsFromScratch) {
  Snapshot snapshot;
  snapshot.index();
  EXPECT_THAT(snapshot.children, IsEmpty());

  for (const auto& [pid, ppid] : {std::pair{30, 10}, {20, 10}, {40, 999}, {10, 10}}) {
    snapshot.procs[pid].pid = pid;
    snapshot.procs[pid].ppid = ppid;
  }
  snapshot.index();
  snapshot.index();
  EXPECT_THAT(snapshot.children, ElementsAre(Pair(10, ElementsAre(10, 20, 30)), Pair(999, ElementsAre(40))));

  snapshot.procs.erase(40);
  snapshot.index();
  EXPECT_THAT(snapshot.children, ElementsAre(Pair(10, ElementsAre(10, 20, 30))));
}

}  // namespace
}  // namespace tarnwick
