#include "sampling/decode/machine_text.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using Temperature = std::optional<std::int64_t>;

TEST(MachineText, TicksOfTheSumLine) {
  const std::tuple<const char*, std::uint64_t, std::uint64_t> cases[] = {
      {"cpu  1 2 4 100 50 8 16 32 64 128\ncpu0 9 9 9 9 9 9 9 9 9 9\n", 63, 213},  // guest is in user already
      {"cpu0 9 9 9 9 9\ncpu  1 2 4 100\n", 7, 107},                               // an old kernel
      {"cpu  1 2 4\n", 0, 0},
      {"cpu  1 2 -4 100 5\n", 0, 0},
      {"cpu  18446744073709551615 1 0 0\n", 0, 0},  // the sum overflows
      {"", 0, 0}};
  for (const auto& [stat, busy, total] : cases) {
    EXPECT_EQ(cpuTicksFromStat(stat).busy, busy) << stat;
    EXPECT_EQ(cpuTicksFromStat(stat).total, total) << stat;
  }
  EXPECT_EQ(bootTimeFromStat("cpu  1 2 3 4\nintr 5 6\nbtime 1700000000\nprocesses 1\n"), 1700000000);
  EXPECT_EQ(bootTimeFromStat("btime 0\n"), std::nullopt);
  EXPECT_EQ(bootTimeFromStat("btime 99999999999999999999\n"), std::nullopt);
}

TEST(MachineText, MemoryInfoInBytes) {
  const MemoryInfo memory = memoryInfo(
      "MemTotal:       16316412 kB\nMemFree: 1 kB\nMemAvailable: 5\n"
      "SwapTotal:      18014398509481983 kB\nSwapFree:       18014398509481984 kB\n");
  EXPECT_EQ(memory.total, 16316412ULL * 1024);
  EXPECT_EQ(memory.available, std::nullopt);
  EXPECT_EQ(memory.swapTotal, 18446744073709550592ULL);  // the most kilobytes that fit
  EXPECT_EQ(memory.swapFree, std::nullopt);
  EXPECT_EQ(swapUsed({.total = {}, .available = {}, .swapTotal = 10, .swapFree = 4}), 6U);
  EXPECT_EQ(swapUsed({.total = {}, .available = {}, .swapTotal = 4, .swapFree = 10}), 0U);
}

TEST(MachineText, PressureFromStalls) {
  const std::tuple<const char*, const char*, std::optional<int>> cases[] = {
      {"avg10=0.00", "avg10=0.00", 1}, {"avg10=9.99", "avg10=9.99", 1},    {"avg10=10.00", "avg10=9.99", 2},
      {"avg10=0", "avg10=10.00", 4},   {"avg10=nan", "avg10=inf", {}},     {"avg10=-1", "avg10=", {}},
      {"avg60=50.00", "", {}},         {"avg10=100.00", "avg10=broken", 2}};
  for (const auto& [some, full, level] : cases) {
    const std::string text = std::string("some ") + some + " avg60=0.00\nfull " + full + " avg60=0.00\n";
    EXPECT_EQ(pressureFromStalls(text), level) << text;
  }
}

TEST(MachineText, PressureFromAvailableMemory) {
  using Bytes = std::optional<std::uint64_t>;
  const std::tuple<Bytes, Bytes, std::optional<int>> cases[] = {
      {1000, 0, 4},    {1000, 49, 4}, {1000, 50, 2},    {1000, 99, 2},      {1000, 100, 1},
      {1000, 2000, 1}, {0, 0, {}},    {Bytes(), 5, {}}, {1000, Bytes(), {}}};
  for (const auto& [total, available, level] : cases) {
    const MemoryInfo memory = {.total = total, .available = available, .swapTotal = {}, .swapFree = {}};
    EXPECT_EQ(pressureFromAvailable(memory), level) << available.value_or(0);
  }
}

ThermalZone zone(Temperature temperature, Temperature passive, Temperature critical) {
  return {.temperature = temperature, .passive = passive, .critical = critical};
}

TEST(MachineText, ThermalStateOfTheHottestZone) {
  const std::tuple<const char*, std::vector<ThermalZone>, ThermalState> cases[] = {
      {"more than 5 degrees below", {zone(89'999, 95'000, 105'000)}, ThermalState::nominal},
      {"5 degrees below", {zone(90'000, 95'000, 105'000)}, ThermalState::fair},
      {"at passive", {zone(95'000, 95'000, 105'000)}, ThermalState::serious},
      {"at critical", {zone(105'000, 95'000, 105'000)}, ThermalState::critical},
      {"critical alone", {zone(104'999, {}, 105'000)}, ThermalState::nominal},
      {"own trip points", {zone(60'000, 95'000, {}), zone(50'000, 45'000, {})}, ThermalState::nominal},
      {"order does not matter", {zone(50'000, 45'000, {}), zone(60'000, 61'000, {})}, ThermalState::fair},
      {"equally hot", {zone(60'000, 60'000, {}), zone(60'000, 95'000, {})}, ThermalState::serious},
      {"hotter without trip points", {zone(99'000, {}, {}), zone(60'000, 60'000, {})}, ThermalState::serious},
      {"no temperature", {zone({}, 1, 1), zone(0, 1, 1), zone(-5000, 1, 1)}, ThermalState::nominal}};
  for (const auto& [about, zones, state] : cases) EXPECT_EQ(thermalState(zones), state) << about;
}

TEST(MachineText, TripPointsKeepTheLowestThatSlows) {
  const std::pair<const char*, Temperature> useless[] = {
      {"active\n", 40'000}, {"passive\n", 0}, {"passive\n", -274'000}, {"critical\n", {}}};
  const std::pair<const char*, Temperature> useful[] = {
      {"critical\n", 105'000}, {"hot\n", 100'000}, {"passive\n", 90'000}, {"passive\n", 95'000}};
  ThermalZone found;
  for (const auto& [type, temperature] : useless) addTripPoint(found, type, temperature);
  EXPECT_FALSE(found.passive || found.critical);
  for (const auto& [type, temperature] : useful) addTripPoint(found, type, temperature);
  EXPECT_EQ(found.passive, 90'000);
  EXPECT_EQ(found.critical, 100'000);
  EXPECT_EQ(numberAlone("-47000\n"), -47'000);
  for (const char* text : {"", "1 2\n", "1\n2\n", "0x10"}) EXPECT_EQ(numberAlone(text), std::nullopt) << text;
}

TEST(MachineText, DiskSpaceThatDoesNotFitIsUnknown) {
  EXPECT_EQ(diskSpace(3, 10, 4096).free, 12'288);
  EXPECT_EQ(diskSpace(1, std::uint64_t{1} << 62U, 2).free, 0);
  EXPECT_EQ(diskSpace(1, std::uint64_t{1} << 62U, 4).total, 0);
}

}  // namespace
}  // namespace tarnwick
