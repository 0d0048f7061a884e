#include "app/program/bench_mode.h"

#include <regex>

#include "tests/support/testing.h"

namespace {

constexpr std::uint64_t mb = 1U << 20U;

struct FakeCost : OwnCost {
  std::uint64_t footprint() override { return (10 + footprintReads++) * mb + mb / 2; }
  std::uint64_t peakFootprint() override { return 99 * mb; }
  double childMilliseconds() override { return childReads++ == 0 ? 100 : 163; }

 private:
  std::uint64_t footprintReads = 0;
  int childReads = 0;
};

// What is printed about five checks with these marks (label, and cost since the mark before), columns aside.
std::string bench(const std::vector<std::vector<std::pair<const char*, double>>>& marks) {
  double clock = 50;
  BenchMarks benchMarks([&] { return clock; });
  std::size_t check = 0;
  const auto scan = [&](double interval) {
    EXPECT_EQ(interval, 0.5);
    return Snapshot{.cores = static_cast<int>(check)};
  };
  const auto findings = [&](const Snapshot& snapshot) {
    EXPECT_EQ(snapshot.cores, static_cast<int>(check));
    for (const auto& [label, cost] : marks.at(check)) {
      clock += cost;
      benchMarks.mark(label);
    }
    ++check;
    return std::vector<Finding>(1);
  };
  FakeCost cost;
  std::string printed;
  runBench({scan, findings}, benchMarks, cost, [&](std::string_view text) { printed += text; });
  EXPECT_EQ(check, 5U);
  benchMarks.mark("after");
  EXPECT_FALSE(benchMarks.take()) << "the marks are no longer armed";
  return std::regex_replace(printed, std::regex(" +"), " ");
}

TEST(BenchMode, PrintsMediansByPhaseAndItsOwnCost) {
  // The second check is the first with a phase: "late" is not among its phases, "once" only there.
  EXPECT_EQ(
      bench({{{"start", 1000}},
             {{"start", 7}, {"first pass", 4}, {"system and apps", 2.3}, {"once", 3}},
             {{"start", 7}, {"first pass", 1}, {"system and apps", 1.3}, {"late", 50}},
             {{"start", 7}, {"first pass", 3}, {"system and apps", 9}},
             {{"start", 7}, {"first pass", 1200.5}}}),
      "footprint before any check: 10.5 MB\nfootprint after check 1: 11.5 MB\nmedian CPU ms per check, by phase:\nfirst pass 4.0\nsystem and apps 2.3\nonce 3.0\nfootprint now: 12.5 MB\n total 9.3\nchild processes: 12.6 ms per check\npeak footprint: 99.0 MB\n");
}

}  // namespace
