#include "records/snapshot.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::Pair;

TEST(Snapshot, NameIsTheLastComponentOfTheFirstArgumentElseOfThePath) {
  EXPECT_EQ((Proc{.path = "/usr/bin/python3.11", .args = {"/opt/venv/bin/python", "x.py"}}.name()), "python");
  EXPECT_EQ(Proc{.path = "/usr/bin/node"}.name(), "node");
  EXPECT_EQ((Proc{.path = "/usr/bin/node", .args = {""}}.name()), "");
  EXPECT_EQ(Proc{.path = "/usr/bin/"}.name(), "");
}
TEST(Snapshot, IndexListsChildrenUnderEveryParentAndStartsFromScratch) {
  Snapshot snapshot;
  for (const auto& [pid, ppid] : {std::pair{30, 10}, {20, 10}, {40, 999}, {10, 10}}) {
    snapshot.procs[pid].pid = pid;
    snapshot.procs[pid].ppid = ppid;
  }
  snapshot.index();
  EXPECT_THAT(snapshot.children, ElementsAre(Pair(10, ElementsAre(10, 20, 30)), Pair(999, ElementsAre(40))));

  snapshot.procs.erase(40);
  snapshot.index();
  EXPECT_THAT(snapshot.children, ElementsAre(Pair(10, ElementsAre(10, 20, 30))));
}

}  // namespace
}  // namespace tarnwick
