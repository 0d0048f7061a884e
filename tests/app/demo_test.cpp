#include "app/demo.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const Self self{4242, 501, "/home/ada"};
const Timestamp now = timestamp(1'790'000'000.25);

Demo demo(const std::optional<std::string>& scenario) { return demoSnapshot(now, scenario, self).value(); }

TEST(Demo, LooksLikeASampledMachine) {
  const Snapshot machine = demo(std::nullopt).snapshot;
  EXPECT_THAT(machine.procs, SizeIs(31 + 9));
  EXPECT_THAT(machine.apps, SizeIs(9 + 2));
  EXPECT_EQ(machine.now, now);
  EXPECT_THAT(machine.children.at(15), ElementsAre(16, 17)) << "indexed";
  EXPECT_EQ(machine.procs.at(20).app, std::nullopt) << "a bundle outside the application folders";
  EXPECT_EQ(machine.procs.at(61).app, "Google Chrome") << "a helper belongs to the outer bundle";
  for (const auto& [pid, proc] : machine.procs)
    EXPECT_EQ(std::pair(proc.pid, proc.uid), std::pair(pid, self.uid));

  EXPECT_THAT(demo("memory").snapshot.procs, SizeIs(40 + 24));
  EXPECT_THAT(demo("calm").snapshot.procs, IsEmpty());
  EXPECT_THAT(demo("calm").snapshot.children, IsEmpty());
  EXPECT_THAT(demo("developer").repositories, SizeIs(1));
}

TEST(Demo, OtherNamesAreUnknown) {
  for (const char* name : {"", "Memory", "memory ", "base"})
    EXPECT_FALSE(demoSnapshot(now, name, self)) << name;
}

}  // namespace
}  // namespace tarnwick
