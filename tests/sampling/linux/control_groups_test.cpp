// Containers' control groups in made trees of both versions.
#include "sampling/linux/control_groups.h"

#include <unistd.h>

#include "tests/support/testing.h"

namespace {

const std::string id = "0123456789ab" + std::string(52, 'c');

TEST(ContainerOfGroup, NamesHoldAWholeId) {
  for (const std::string& name : {"docker-" + id + ".scope", "libpod-" + id + ".scope", "libpod-" + id})
    EXPECT_EQ(containerOfGroup(name, false), id) << name;
  EXPECT_EQ(containerOfGroup(id, true), id);
  for (const std::string& name :
       {id, "libpod-conmon-" + id + ".scope", "docker-" + id.substr(1), "docker-" + id + "0",
        std::string("docker.service"), "docker-" + std::string(64, 'G')})
    EXPECT_EQ(containerOfGroup(name, false), std::nullopt) << name;
  for (const char* name : {"buildkit", ""}) EXPECT_EQ(containerOfGroup(name, true), std::nullopt) << name;
}

struct Tree : TempFolder {
  std::vector<ContainerGroup> read() const { return ControlGroups(path(), 1000).containers(); }
};

TEST(ControlGroups, AreFoundWhereverAnEngineLaysThem) {
  const std::string manager = "user.slice/user-1000.slice/user@1000.service/";
  for (const std::string& place :
       {"system.slice/docker-" + id + ".scope", "docker/" + id,
        manager + "user.slice/docker-" + id + ".scope", manager + "app.slice/libpod-" + id + ".scope",
        "machine.slice/machine-libpod_pod_1f.slice/libpod-" + id + ".scope", "libpod_parent/libpod-" + id}) {
    for (const bool unified : {true, false}) {
      const Tree tree;
      const std::string memory = (unified ? "" : "memory/") + place;
      tree.write(memory + "/cgroup.procs", "40\n0\n41\n");
      tree.write(memory + "/init.scope/cgroup.procs", "42\n");
      if (unified) {
        tree.write("cgroup.controllers", "cpu memory\n");
        tree.write(memory + "/memory.current", "5000\n");
        tree.write(memory + "/memory.stat", "anon 900\ninactive_file 1200\nactive_file 7\n");
        tree.write(memory + "/cpu.stat", "usage_usec 2500\nuser_usec 9\n");
      } else {
        tree.write(memory + "/memory.usage_in_bytes", "5000\n");
        tree.write(memory + "/memory.stat", "inactive_file 7\ntotal_inactive_file 1200\n");
        tree.write("cpuacct/" + place + "/cpuacct.usage", "2500000\n");
      }
      const auto groups = tree.read();
      ASSERT_EQ(groups.size(), 1U) << place;
      EXPECT_EQ(std::tie(groups[0].id, groups[0].bytes, groups[0].processorTime, groups[0].pids),
                std::tuple("0123456789ab", 3'800U, 2'500'000U, std::vector<Pid>{40, 41, 42}))
          << place;
    }
  }
}

TEST(ControlGroups, WhatIsUnreadableOrAbsurdIsZeroAndOurOwnIsTheMachine) {
  const Tree tree;
  EXPECT_THAT(tree.read(), IsEmpty());
  tree.write("cgroup.controllers", "");
  const std::string group = "docker/" + id;
  tree.write(group + "/cgroup.procs", "");
  ASSERT_THAT(tree.read(), SizeIs(1));
  EXPECT_EQ(tree.read()[0].bytes + tree.read()[0].processorTime, 0U);
  tree.write(group + "/memory.current", "max\n");
  tree.write(group + "/memory.stat", "inactive_file 99999999999999999999999\n");
  EXPECT_EQ(tree.read()[0].bytes, 0U);
  tree.write(group + "/memory.current", "281474976710657\n");
  tree.write(group + "/memory.stat", "");
  tree.write(group + "/cpu.stat", "usage_usec 18446744073709552\n");
  EXPECT_EQ(tree.read()[0].bytes, 0U);
  EXPECT_EQ(tree.read()[0].processorTime, std::numeric_limits<std::uint64_t>::max()) << "and does not wrap";
  tree.write(group + "/memory.current", "1000\n");
  tree.write(group + "/memory.stat", "inactive_file 1000\n");
  EXPECT_EQ(tree.read()[0].bytes, 1000U) << "as the engine reckons";
  tree.write(group + "/cgroup.procs", std::to_string(::getpid()) + "\n");
  EXPECT_THAT(tree.read(), IsEmpty());
}

}  // namespace
