#include "diagnosis/report.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

Snapshot machine() {
  Snapshot snapshot;
  snapshot.ram = 16ULL << 30U;
  snapshot.swapUsed = 2'469'606'195;  // 2.3 GB
  snapshot.cpuBusy = 0.365;
  snapshot.uptime = 3 * 86'400 + 5;
  return snapshot;
}

const std::string machineLine =
    "16.0 GB memory, 2.3 GB moved to disk · processor 37% busy · last restart 3 days ago\n";

TEST(Report, HeaderRoundsHalvesAwayFromZero) {
  EXPECT_EQ(header(machine()) + "\n", machineLine);
  Snapshot snapshot = machine();
  snapshot.cpuBusy = 0.125;
  EXPECT_NE(header(snapshot).find("processor 13% busy"), std::string::npos);
}

TEST(Report, WithoutFindingsSaysSo) {
  EXPECT_EQ(text(machine(), {}, {}), machineLine + "\nNo known cause found.\n");
}

TEST(Report, GroupsByBucketAndKeepsListOrderInside) {
  const Action stop{"Stop it", {Signal{41, 15, {}}}};
  const Action quit{"Quit Chrome", {QuitApp{"com.google.Chrome"}}};
  const std::vector<Finding> found{
      {.id = "1",
       .bucket = Bucket::leftovers,
       .title = "Left",
       .detail = "Left detail.",
       .bytes = 5,
       .actions = {stop, quit}},
      {.id = "2",
       .bucket = Bucket::now,
       .title = "First",
       .detail = "First detail.",
       .evidence = "proof\nline two"},
      {.id = "3",
       .bucket = Bucket::now,
       .title = "Second",
       .detail = "Second detail.",
       .evidence = "other proof",
       .steps = {{"Do this."}, {"Then that.", quit}},
       .subject = "never shown",
       .summary = "never shown",
       .metric = "never shown",
       .icon = "never shown"},
  };
  const Guesses guesses{{"proof\nline two", "It serves tests."}, {"proof", "Wrong."}, {"", "Wrong."}};
  EXPECT_EQ(text(machine(), found, guesses), machineLine +
                                                 "\nBUSY NOW\n"
                                                 "  First\n"
                                                 "  ✨ It serves tests.\n"
                                                 "  First detail.\n"
                                                 "  Second\n"
                                                 "  Second detail.\n"
                                                 "  What you can do:\n"
                                                 "    1. Do this.\n"
                                                 "    2. Then that.  [Quit Chrome]  Cmd-Q com.google.Chrome\n"
                                                 "\nFORGOTTEN\n"
                                                 "  Left\n"
                                                 "  Left detail.\n"
                                                 "    [Stop it]  kill -TERM 41\n"
                                                 "    [Quit Chrome]  Cmd-Q com.google.Chrome\n");
}

}  // namespace
}  // namespace tarnwick
