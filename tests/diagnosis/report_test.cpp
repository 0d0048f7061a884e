#include "diagnosis/report.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

Snapshot machine() {
  return {.ram = 16ULL << 30U,
          .swapUsed = 2'469'606'195,  // 2.3 GB
          .cpuBusy = 0.125,
          .uptime = 3 * 86'400 + 5};
}

TEST(Report, HeaderRoundsHalvesAwayFromZero) {
  EXPECT_EQ(header(machine()),
            "16.0 GB memory, 2.3 GB moved to disk · processor 13% busy · last restart 3 days ago");
}

TEST(Report, AGuessStandsUnderTheTitleOfItsEvidence) {
  const std::vector<Finding> found{
      {.id = "1", .bucket = Bucket::leftovers, .title = "Left", .detail = "Left detail."},
      {.id = "2",
       .bucket = Bucket::now,
       .title = "First",
       .detail = "Detail.",
       .evidence = "proof\nline two"},
      {.id = "3", .bucket = Bucket::now, .title = "Second", .detail = "Other.", .evidence = "other proof"}};
  const Guesses guesses{{"proof\nline two", "It serves tests."}, {"proof", "Wrong."}, {"", "Wrong."}};
  EXPECT_EQ(text(machine(), found, guesses),
            header(machine()) +
                "\n\nBUSY NOW\n  First\n  ✨ It serves tests.\n  Detail.\n  Second\n  Other.\n"
                "\nFORGOTTEN\n  Left\n  Left detail.\n");
}

}  // namespace
}  // namespace tarnwick
