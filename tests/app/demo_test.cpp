#include "app/demo.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

const Self self{4242, 501, "/home/ada"};
const Timestamp now = timestamp(1'790'000'000.25);
constexpr std::uint64_t gigabyte = 1ULL << 30U;
constexpr std::uint64_t megabyte = 1ULL << 20U;

Demo demo(const std::optional<std::string>& scenario) { return demoSnapshot(now, scenario, self).value(); }

TEST(Demo, TheBaseMachine) {
  const Snapshot machine = demo(std::nullopt).snapshot;
  EXPECT_THAT(machine.procs, SizeIs(31 + 9));
  EXPECT_THAT(machine.apps, SizeIs(9 + 2));
  EXPECT_THAT(machine.containers,
              ElementsAre(Container{"c1", "projx1-db", "Up 13 hours", "postgres:17", 100 * megabyte},
                          Container{"c2", "other-db", "Up 2 days", "redis", megabyte}));
  EXPECT_EQ(machine.thermal, ThermalState::serious);
  EXPECT_EQ(machine.diskFree, static_cast<std::int64_t>(9 * gigabyte));
  EXPECT_EQ(machine.now, now);
  EXPECT_EQ(machine.uptime, 0);
  EXPECT_THAT(machine.access, ElementsAre(Pair("com.google.Chrome", Access::notAsked)));
  EXPECT_THAT(machine.tabs, IsEmpty());
  EXPECT_THAT(machine.children.at(15), ElementsAre(16, 17)) << "indexed like a sampled one";

  std::uint64_t bytes = 0;
  double cores = 0;
  for (const auto& [pid, proc] : machine.procs) {
    EXPECT_EQ(proc.pid, pid);
    EXPECT_EQ(proc.uid, self.uid);
    EXPECT_EQ(proc.resident, 0U);
    bytes += proc.footprint;
    cores += proc.cpu;
  }
  // 300+30 (test browser), 50+20 (servers), 10+200 (simulator), 1024+1024+200+300 (browsers), 2048 (Docker),
  // 700+600+500+400+900+300+200+100+800 (everyday applications)
  EXPECT_EQ(bytes, 9'706 * megabyte);
  EXPECT_DOUBLE_EQ(cores, 3 * 0.9 + 3 * 1.2);
}

TEST(Demo, RowsThatRulesDependOn) {
  const Snapshot machine = demo(std::nullopt).snapshot;
  const auto& procs = machine.procs;
  EXPECT_EQ(procs.at(11).path, "/usr/bin/-zsh");
  EXPECT_EQ(procs.at(14).started, now - Seconds{43});
  EXPECT_THAT(procs.at(20).args, ElementsAre(""));
  EXPECT_EQ(procs.at(20).app, std::nullopt) << "a bundle outside the application folders";
  EXPECT_THAT(procs.at(23).path, testing::EndsWith("Testing.app/Contents/Frameworks/crashpad"));
  EXPECT_THAT(procs.at(41).ports, ElementsAre(3000));
  EXPECT_EQ(procs.at(41).cwd, "/home/ada/tarnwick-selftest/projx1");
  EXPECT_EQ(procs.at(44).cwd, "/home/ada/Library/Containers/com.example/Data");
  EXPECT_THAT(procs.at(50).args.at(1),
              testing::StartsWith("/home/ada/Library/Developer/CoreSimulator/Devices/0000"));
  EXPECT_EQ(procs.at(61).app, "Google Chrome") << "a helper belongs to the outer bundle";
  EXPECT_EQ(procs.at(62).app, "Safari");
  EXPECT_EQ(procs.at(63).app, std::nullopt);
  EXPECT_EQ(procs.at(72).path, "/Applications/zoom.us.app/Contents/MacOS/Zoom");
  EXPECT_EQ(procs.at(72).app, "zoom.us");
  EXPECT_EQ(procs.at(76).app, "1Password");
  EXPECT_EQ(procs.at(80).app, "Docker");
  EXPECT_EQ(procs.at(81).app, std::nullopt);
}

TEST(Demo, TheScenariosChangeTheBase) {
  const Demo memory = demo("memory");
  EXPECT_THAT(memory.snapshot.procs, SizeIs(40 + 24));
  EXPECT_THAT(memory.snapshot.children.at(60), SizeIs(1 + 24));
  EXPECT_EQ(memory.snapshot.procs.at(623).app, "Google Chrome");
  EXPECT_EQ(memory.snapshot.procs.at(600).footprint, 50 * megabyte);
  for (const auto& [pid, proc] : memory.snapshot.procs) EXPECT_EQ(proc.cpu, 0) << pid;
  EXPECT_EQ(memory.snapshot.memorySaver, 0);
  EXPECT_EQ(memory.snapshot.pressure, 2);
  EXPECT_EQ(memory.snapshot.swapUsed, 3 * gigabyte);
  EXPECT_EQ(memory.snapshot.access.at("com.google.Chrome"), Access::allowed);
  EXPECT_EQ(memory.snapshot.tabs.at("com.google.Chrome"),
            (Tabs{12, {{"docs.google.com", 9}, {"youtube.com", 6}, {"mail.google.com", 4}}}));

  const Demo calm = demo("calm");
  EXPECT_THAT(calm.snapshot.procs, IsEmpty());
  EXPECT_THAT(calm.snapshot.children, IsEmpty());
  EXPECT_THAT(calm.snapshot.apps, SizeIs(11));
  EXPECT_THAT(calm.snapshot.containers, SizeIs(2));

  const Demo developer = demo("developer");
  EXPECT_EQ(developer.snapshot.ram, 16 * gigabyte);
  EXPECT_EQ(developer.snapshot.procs.at(41).ppid, 1);
  EXPECT_EQ(developer.snapshot.procs.at(40).cwd, "/home/ada/tarnwick-selftest/storefront");
  EXPECT_EQ(developer.snapshot.procs.at(81).footprint, 8 * gigabyte);
  EXPECT_EQ(developer.snapshot.containers.at(1),
            (Container{"c2", "storefront-redis", "Up 13 hours", "redis:7", 120 * megabyte}));
  const Git git{"storefront", "fix/checkout-tax", "Round tax for each line item", "14 hours ago",
                false,        std::nullopt};
  EXPECT_THAT(developer.repositories, ElementsAre(Pair("/home/ada/tarnwick-selftest/storefront", git)));

  for (const Demo* scenario : {&memory, &calm, &developer}) {
    EXPECT_EQ(scenario->snapshot.thermal, ThermalState::nominal);
    EXPECT_EQ(scenario->snapshot.diskFree, static_cast<std::int64_t>(140 * gigabyte));
  }
  EXPECT_THAT(memory.repositories, IsEmpty());
}

TEST(Demo, OtherNamesAreUnknown) {
  for (const char* name : {"", "Memory", "memory ", "base"})
    EXPECT_FALSE(demoSnapshot(now, name, self)) << name;
}

}  // namespace
}  // namespace tarnwick
