#include "sampling/linux/linux_machine_source.h"

#include <sched.h>

#include "tests/support/testing.h"

namespace tarnwick {
namespace {

TEST(LinuxMachineSource, ReadsALaidOutMachine) {
  const TempFolder folder;
  LinuxMachineSource source({.procRoot = folder.at("proc"), .sysRoot = folder.at("sys")});
  EXPECT_EQ(source.bootTime(), std::nullopt);
  EXPECT_EQ(source.memory().pressure, std::nullopt);
  EXPECT_EQ(source.thermal(), ThermalState::nominal);
  EXPECT_EQ(source.cpuTicks().total + source.memory().ram + source.memory().swapUsed, 0U);

  folder.write("proc/stat", "cpu  10 0 5 85 0 0 0 0\nbtime 1700000000\n");
  folder.write("proc/meminfo", "MemTotal: 1000 kB\nMemAvailable: 70 kB\nSwapTotal: 9 kB\nSwapFree: 4 kB\n");
  const std::pair<const char*, const char*> zones[] = {{"zone0/temp", "50000\n"},
                                                       {"zone0/trip_point_0_type", "passive\n"},
                                                       {"zone0/trip_point_0_temp", "40000\n"},
                                                       {"zone1/temp", "91000\n"},
                                                       {"zone1/trip_point_0_type", "critical\n"},
                                                       {"zone1/trip_point_1_type", "passive\n"},
                                                       {"zone1/trip_point_1_temp", "95000\n"}};
  for (const auto& [name, text] : zones) folder.write(std::string("sys/class/thermal/thermal_") + name, text);
  EXPECT_EQ(source.cpuTicks().busy, 15U);
  EXPECT_EQ(source.bootTime(), 1700000000);
  EXPECT_EQ(source.memory().ram, 1'024'000U);
  EXPECT_EQ(source.memory().swapUsed, 5U * 1024);
  EXPECT_EQ(source.thermal(), ThermalState::serious) << "the cooler zone is over its own limit";
  EXPECT_EQ(source.memory().pressure, 2);  // 7 % available
  folder.write("proc/pressure/memory", "some avg10=0.00 total=0\nfull avg10=12.50 total=0\n");
  EXPECT_EQ(source.memory().pressure, 4);
  folder.write("proc/stat", "cpu  1 0 0 0\nbtime 1700000001\n");
  EXPECT_EQ(source.bootTime(), 1700000000);  // the first answer stays
}

TEST(LinuxMachineSource, DiskSpaceIsInBytes) {
  const DiskSpace space = LinuxMachineSource().disk();
  const std::filesystem::space_info expected = std::filesystem::space("/");
  EXPECT_EQ(space.total, static_cast<std::int64_t>(expected.capacity));
  EXPECT_LE(space.free, space.total);
}

TEST(LinuxMachineSource, CoresFollowTheAffinity) {
  LinuxMachineSource source;
  cpu_set_t own;
  ASSERT_EQ(sched_getaffinity(0, sizeof own, &own), 0);
  EXPECT_EQ(source.cores(), CPU_COUNT(&own));
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(static_cast<std::size_t>(sched_getcpu()), &one);
  ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  EXPECT_EQ(source.cores(), 1);
  ASSERT_EQ(sched_setaffinity(0, sizeof own, &own), 0);
}

}  // namespace
}  // namespace tarnwick
