#include "diagnosis/findings.h"

#include <gmock/gmock.h>

#include "tests/support/machines.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Heat 1.0, two services with the same share, and a full disk 0.9.
Snapshot troubled() {
  Snapshot snapshot;
  snapshot.thermal = ThermalState::serious;
  snapshot.diskTotal = 1;
  snapshot.cores = 1;
  for (const auto& [pid, name] : {std::pair{10, "mdworker"}, {11, "cloudd"}}) {
    snapshot.procs[pid] = {.pid = pid, .uid = 501, .args = {name}, .cpu = 0.9};
  }
  return snapshot;
}

TEST(Findings, SortByImpactThenId) {
  FakeSurroundings nobody;
  BenchMarks marks([] { return 0.0; });
  EXPECT_THAT(ids(findings(troubled(), {}, nobody, marks)),
              ElementsAre("heat", "disk", "service:Spotlight is indexing your files",
                          "service:iCloud is syncing your files"))
      << "equal impacts go by the bytes of the id: d, s; then capital S before small i";
  EXPECT_THAT(findings(Snapshot{}, {}, nobody, marks), IsEmpty());
}

TEST(Findings, MarkElevenRulesInTableOrderOnlyWhenArmed) {
  FakeSurroundings nobody;
  double milliseconds = 0;
  BenchMarks marks([&] { return ++milliseconds; });
  findings(troubled(), {}, nobody, marks);
  EXPECT_EQ(milliseconds, 0) << "not armed, the clock is not even read";

  marks.arm();
  findings(troubled(), {}, nobody, marks);
  const auto taken = marks.take();
  ASSERT_TRUE(taken);
  std::vector<std::string> names;
  for (const auto& [name, at] : *taken) {
    names.push_back(name);
    EXPECT_EQ(at, static_cast<double>(names.size())) << "cumulative, not a difference";
  }
  EXPECT_THAT(names, ElementsAre("heat", "browsers", "services", "disk", "login items", "cpu", "docker card",
                                 "simulators", "stacks", "test browsers", "caffeinate"));
  EXPECT_FALSE(marks.take()) << "taking disarms";
}

}  // namespace
}  // namespace tarnwick
