#include "records/wording.h"

#include <gtest/gtest.h>

#include <limits>

namespace tarnwick {
namespace {

constexpr std::uint64_t gigabyte = 1ULL << 30U;

TEST(Wording, SizesChangeUnitAndPrecisionAtTheirLimits) {
  const std::pair<std::uint64_t, const char*> cases[] = {
      {1'048'575, "0 MB"},
      {1'048'576, "1 MB"},
      {gigabyte - 1, "1023 MB"},
      {gigabyte, "1.0 GB"},
      {99 * gigabyte + gigabyte / 10 * 9, "99.9 GB"},
      {100 * gigabyte - 1, "100.0 GB"},
      {100 * gigabyte, "100 GB"},
      {std::numeric_limits<std::uint64_t>::max(), "17179869184 GB"},
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(size(bytes), text) << bytes;
}

TEST(Wording, AgesAreTruncatedToTheirLargestUnit) {
  const std::pair<double, const char*> cases[] = {
      {0, "0 seconds"},        {1, "1 second"},
      {59.9, "59 seconds"},    {60, "1 minute"},
      {3'599, "59 minutes"},   {3'600, "1 hour"},
      {86'400, "24 hours"},    {169'200, "47 hours"},
      {172'799.9, "47 hours"}, {172'800, "2 days"},
      {864'000, "10 days"},    {-5, "-5 seconds"},
      {-0.5, "0 seconds"},     {-90'000, "-90000 seconds"},
  };
  for (const auto& [seconds, text] : cases) EXPECT_EQ(ago(seconds), text) << seconds;
}

TEST(WordingDeathTest, NumbersThatAreNoNumbersStopTheProgram) {
  const double infinite = std::numeric_limits<double>::infinity();
  Snapshot snapshot;
  EXPECT_DEATH(ago(infinite), "fault");
  EXPECT_DEATH(ago(std::numeric_limits<double>::quiet_NaN()), "fault");
  EXPECT_DEATH(ago(-1e19), "fault");
  EXPECT_DEATH(pct(infinite, snapshot), "fault");
}

TEST(Wording, PluralsAndLists) {
  EXPECT_EQ(plural(1, "process"), "1 process");
  EXPECT_EQ(plural(2, "process"), "2 processes");
  EXPECT_EQ(plural(0, "app"), "0 apps");
  EXPECT_EQ(plural(-1, "hour"), "-1 hours");
  EXPECT_EQ(list({}), "");
  EXPECT_EQ(list({"a"}), "a");
  EXPECT_EQ(list({"Photos", "Spotlight"}), "Photos and Spotlight");
  EXPECT_EQ(list({"a", "b", "c"}), "a, b, and c");
}

TEST(Wording, ProcessorSharesRoundHalvesAwayFromZero) {
  const std::tuple<double, int, const char*> cases[] = {
      {4.0, 8, "50% CPU"},   {0.5, 10, "5% CPU"},   {1.5, 0, "150% CPU"},
      {1.5, -3, "150% CPU"}, {0.125, 1, "13% CPU"}, {-0.001, 1, "0% CPU"},
      {0.005, 1, "1% CPU"},  {0.0049, 1, "0% CPU"}, {0.625, 1, "63% CPU"},
  };
  for (const auto& [cpu, cores, text] : cases) {
    Snapshot snapshot;
    snapshot.cores = cores;
    EXPECT_EQ(pct(cpu, snapshot), text) << cpu << " on " << cores;
  }
}

}  // namespace
}  // namespace tarnwick
