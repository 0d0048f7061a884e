#include "sampling/linux/linux_machine_source.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include "tests/support/testing.h"

namespace {

TEST(LinuxMachineSource, ReadsALaidOutMachine) {
  const TempFolder folder;
  LinuxMachineSource source({.procRoot = folder.at("proc"), .sysRoot = folder.at("sys")});
  EXPECT_EQ(source.thermal(), ThermalState::nominal);
  EXPECT_FALSE(source.bootTime() || source.memory().pressure);
  EXPECT_EQ(source.cpuTicks().total + source.memory().ram + source.memory().swapUsed, 0U);

  folder.write("proc/stat", "cpu  10 0 5 85 0 0 0 0\nbtime 1700000000\n");
  folder.write("proc/meminfo", "MemTotal: 1000 kB\nMemAvailable: 70 kB\nSwapTotal: 9 kB\nSwapFree: 4 kB\n");
  std::istringstream zones(R"(
      zone0/temp 50000  zone0/trip_point_0_type passive   zone0/trip_point_0_temp 40000
      zone1/temp 91000  zone1/trip_point_0_type critical  zone1/trip_point_1_type passive  zone1/trip_point_1_temp 95000)");
  for (std::string name, text; zones >> name >> text;)
    folder.write("sys/class/thermal/thermal_" + name, text + "\n");
  const MemoryState memory = source.memory();
  EXPECT_EQ(std::tuple(source.cpuTicks().busy, source.bootTime()), std::tuple(15U, 1700000000));
  EXPECT_EQ(std::tie(memory.ram, memory.swapUsed, memory.inUse, memory.pressure),
            std::tuple(1'024'000U, 5U * 1024, 930U * 1024, 2))
      << "7 % available";
  EXPECT_EQ(source.thermal(), ThermalState::serious) << "the cooler zone is over its own limit";
  folder.write("proc/pressure/memory", "some avg10=0.00 total=0\nfull avg10=12.50 total=0\n");
  EXPECT_EQ(source.memory().pressure, 4);
  folder.write("proc/stat", "cpu  1 0 0 0\nbtime 1700000001\n");
  EXPECT_EQ(source.bootTime(), 1700000001) << "the time of day was set";
}

TEST(MachineFiles, EachIsReadOnceInAPass) {
  const TempFolder folder;
  folder.write("proc/stat", "");
  const ProcReader reader(folder.at("proc"));
  MachineFiles files(reader);
  // The boot time and the memory that are seen once these files hold that number.
  const auto seen = [&](int number) {
    folder.write("proc/stat", "cpu  1 0 0 1\nbtime " + std::to_string(number) + "\n");
    folder.write("proc/meminfo", "MemTotal: " + std::to_string(number) + " kB\n");
    return std::pair(files.bootTime().value_or(0),
                     files.memory().value_or(MemoryInfo{}).total.value_or(0) / 1024);
  };
  using Seen = std::pair<std::int64_t, std::uint64_t>;
  EXPECT_EQ(seen(1), Seen(1, 1));
  EXPECT_EQ(files.cpuTicks().total, 2U);
  files.beginPass();
  EXPECT_EQ(seen(2), Seen(1, 2)) << "the boot time came with the counters";
  EXPECT_EQ(seen(3), Seen(1, 2)) << "the same pass";
  files.beginPass();
  EXPECT_EQ(seen(4), Seen(4, 4)) << "the next one, without counters";
  EXPECT_EQ(seen(5), Seen(4, 4));
  files.cpuTicks();
  EXPECT_EQ(files.bootTime(), 4) << "still that pass";
  std::filesystem::remove_all(folder.at("proc"));
  for (int pass = 0; pass < 2; ++pass) files.beginPass();
  EXPECT_FALSE(files.bootTime() || files.memory());
}

TEST(LinuxMachineSource, TheDiskThatFillsUpFirstCountsAndAnImageNever) {
  if (::geteuid() != 0) GTEST_SKIP() << "mounting takes root";
  const TempFolder folder;
  const auto mounted = [&](const char* name, const char* options) {
    folder.write(std::string(name) + "/x", "");
    EXPECT_EQ(::mount("tmpfs", folder.at(name).c_str(), "tmpfs", 0, options), 0) << name;
    return folder.at(name);
  };
  const std::string small = mounted("small", "size=1m");
  const std::string large = mounted("large", "size=4m");
  const std::string image = mounted("image", "size=1m");
  EXPECT_EQ(::mount(nullptr, image.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
  const std::tuple<std::string, std::string, std::int64_t> cases[] = {
      {large, small, 1},        {small, large, 1}, {image, large, 4},
      {small, image + "/x", 1}, {image, image, 0}, {folder.at("none"), large, 4}};
  for (const auto& [system, home, mebibytes] : cases) {
    LinuxMachineSource source({.systemVolume = system, .home = home});
    EXPECT_EQ(source.disk().total, mebibytes << 20U) << system << " " << home;
  }
  for (const std::string& place : {small, large, image}) ::umount2(place.c_str(), MNT_DETACH);
}

TEST(LinuxMachineSource, CoresAreTheMachinesWhateverTheAffinity) {
  const TempFolder folder;
  LinuxMachineSource laidOut({.sysRoot = folder.path()});
  EXPECT_EQ(laidOut.cores(), ::sysconf(_SC_NPROCESSORS_ONLN)) << "no list to be had";
  const std::pair<const char*, int> lists[] = {{"0-3\n", 4}, {"0\n", 1}, {"0-1,4,6-7\n", 5}};
  for (const auto& [list, cores] : lists) {
    folder.write("devices/system/cpu/online", list);
    EXPECT_EQ(laidOut.cores(), cores) << list;
  }
  for (const char* bad : {"", "\n", "0-", "3-1", "0,,1", "-1", "0-99999999", "0-2147483647,0-2147483647"})
    EXPECT_EQ(processorsInList(bad), 0) << bad;

  const int before = LinuxMachineSource().cores();
  std::thread([&] {
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<std::size_t>(sched_getcpu()), &one);
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    EXPECT_EQ(LinuxMachineSource().cores(), before);
  }).join();
}

}  // namespace
