#include "tests/support/machines.h"

namespace tarnwick {
namespace {

const std::string vmPath = "/System/x/com.apple.Virtualization.VirtualMachine";

std::string remedies(const Finding& found) {
  std::string all;
  for (const Action& action : found.actions) all += action.label + ": " + action.fix.command() + ". ";
  return all;
}

// Docker with a virtual machine of 3 GB, all of it resident, that is idle.
Snapshot withDocker() {
  Snapshot m = machine();
  addApp(m, 80, "Docker");
  Proc& vm = add(m, 81, 1, {"vm"});
  vm.path = vmPath;
  vm.footprint = vm.resident = 3 * gigabyte;
  return m;
}

TEST(DockerVM, IsTheLargestMachineWhereDockerRuns) {
  Snapshot m = withDocker();
  EXPECT_EQ(dockerVM(m)->pid, 81);
  m.procs[79] = {.pid = 79, .ppid = 1, .path = vmPath, .footprint = 3 * gigabyte};
  EXPECT_EQ(dockerVM(m)->pid, 79) << "the first of equal ones";
  m.procs[81].footprint += 1;
  EXPECT_EQ(dockerVM(m)->pid, 81);
  m.procs.erase(80);
  EXPECT_EQ(dockerVM(m), nullptr) << "some other program's machine";
  EXPECT_THAT(docker(m), IsEmpty());
}

TEST(Docker, LargeOrBusy) {
  Snapshot m = withDocker();
  Proc& vm = m.procs[81];
  Snapshot without = machine();
  EXPECT_THAT(docker(without), IsEmpty());
  const std::tuple<std::uint64_t, double, std::size_t> cases[] = {
      {gigabyte, 0.9, 0}, {gigabyte + 1, 0, 1}, {gigabyte, 1.0, 1}, {0, 1.0, 1}, {0, 0.999, 0}};
  for (const auto& [bytes, cpu, cards] : cases) {
    vm.footprint = bytes;
    vm.cpu = cpu;
    EXPECT_THAT(docker(m), SizeIs(cards)) << bytes << " " << cpu;
    without.containerLoad = {.count = 1, .bytes = bytes, .cpu = cpu};
    EXPECT_THAT(docker(without), SizeIs(cards)) << bytes << " " << cpu << " of the system's own containers";
  }
}

TEST(Docker, SentencesAtTheirLimits) {
  Snapshot m = withDocker();
  const Finding found = only(docker(m));
  EXPECT_EQ(found.detail, found.summary.substr(0, found.summary.size() - 1) +
                              ", even when your containers need less. Quit Docker to free all of it.");
  EXPECT_EQ(
      std::tie(found.summary, found.metric, found.impact, found.icon),
      std::tuple("Docker keeps this memory for its Linux system.", "18% of memory", 3.0 / 16, "shippingbox"));

  Proc& vm = m.procs[81];
  vm.cpu = 0.49;
  vm.resident = vm.footprint / 2;
  EXPECT_THAT(only(docker(m)).detail, AllOf(Not(HasSubstr("also uses")), Not(HasSubstr("compressed"))))
      << "exactly twice the resident size";
  vm.cpu = 0.5;
  vm.resident -= 1;
  EXPECT_THAT(only(docker(m)).detail,
              AllOf(HasSubstr("Docker also uses 5% CPU right now"), HasSubstr("compressed")));
  vm.footprint = vm.resident = ~0ULL;
  m.ram = 0;
  EXPECT_THAT(only(docker(m)).detail, Not(HasSubstr("compressed")))
      << "twice the resident size does not wrap";
  EXPECT_EQ(only(docker(m)).metric, "18446744073709551615% of memory") << "nor does the percentage";
}

TEST(Docker, ContainersThatCanBeStopped) {
  Snapshot m = withDocker();
  m.procs[81].cpu = 5;
  m.containers = {{"c1", "a-db", "Up 3 hours (healthy)", "Postgres:17", 100 * megabyte},
                  {"c2", "b", "Up 2 days", "nginx", 50 * megabyte},
                  {"c3", "c", "", "redis", 100 * megabyte},
                  {"c4", "d", "Up Up (Paused) x", "mongo", 200 * megabyte}};
  const Finding found = only(docker(m));
  EXPECT_EQ(found.detail.find("Your 4 containers need only 450 MB. Docker keeps the rest for itself."), 0U);
  EXPECT_EQ(found.impact, 0.5);
  EXPECT_EQ(
      remedies(found),
      "Quit Docker: Cmd-Q com.docker.docker. Stop d (MongoDB, 200 MB): docker stop c4. Stop a-db (Postgres, 100 MB, on for 3 hours): docker stop c1. Stop c (Redis, 100 MB): docker stop c3. ")
      << "a status without a time says nothing";
  m.containers.resize(1);
  m.apps = {{80, "Docker", "com.docker.docker", "/Applications/Docker.app", false}};
  EXPECT_EQ(only(docker(m)).icon, "/Applications/Docker.app");
  EXPECT_EQ(only(docker(m)).detail.find("Your 1 container need only 100 MB."), 0U);
}

TEST(Docker, ContainersThatAreNotListedCountTooAndAbsurdFiguresAddUpToTheLargest) {
  Snapshot m = withDocker();
  m.containers = {{.id = "c1", .mem = 100 * megabyte}};
  m.moreContainers = {.count = 2, .bytes = 50 * megabyte};
  EXPECT_THAT(only(docker(m)).detail, StartsWith("Your 3 containers need only 150 MB."));
  for (const char* id : {"c2", "c3"}) m.containers.push_back({.id = id, .mem = 1ULL << 63U});
  EXPECT_THAT(only(docker(m)).detail, StartsWith("Your 5 containers need only 17179869184 GB."));
}

// Containers of the system's own kernel stand where the virtual machine stands, and their engine keeps
// nothing.
TEST(Containers, StandWhereTheMachineStands) {
  Snapshot m = machine();
  m.containers = {{"c1", "web", "Up 3 hours", "nginx", 100 * megabyte},
                  {"c2", "db", "Up 2 days (healthy)", "postgres:16", 2 * gigabyte},
                  {"c3", "queue", "Up 3 hours", "redis", 200 * megabyte},
                  {"c4", "cache", "Up 3 hours", "redis", 150 * megabyte}};
  m.containerLoad = {.count = 5, .bytes = 4 * gigabyte, .cpu = 0.49};  // one is not the engine's
  Finding found = only(docker(m));
  EXPECT_EQ(
      std::tie(found.id, found.title, found.detail, found.summary, found.subject, found.metric, found.icon),
      std::tuple("docker", "Docker uses 4.0 GB of memory",
                 "Your 5 containers use 4.0 GB. Stop those that you do not need.",
                 "Your 5 containers use 4.0 GB.", "Docker", "25% of memory", "shippingbox"));
  EXPECT_EQ(std::tuple(found.bucket, found.bytes, found.impact),
            std::tuple(Bucket::always, 4 * gigabyte, 0.25));
  EXPECT_EQ(remedies(found),
            "Stop db (Postgres, 2.0 GB, on for 2 days): docker stop c2. "
            "Stop queue (Redis, 200 MB, on for 3 hours): docker stop c3. "
            "Stop cache (Redis, 150 MB, on for 3 hours): docker stop c4. ");
  m.containerLoad = {.count = 1, .bytes = gigabyte, .cpu = 6};
  found = only(docker(m));
  EXPECT_EQ(found.detail,
            "Your 1 container uses 1.0 GB. It also uses 60% CPU now. Stop it if you do not need it.");
  EXPECT_EQ(found.impact, 0.6);
  m.containerLoad->count = 2;
  EXPECT_THAT(only(docker(m)).summary, testing::EndsWith("They also use 60% CPU now."));
}

TEST(DockerVM, IsTheEmulatorThatDockerDesktopStarted) {
  const std::string qemu = "/usr/bin/qemu-system-x86_64";
  const std::string kernel = "/opt/docker-desktop/linuxkit/kernel";
  const std::tuple<std::string, Strings, const char*, bool> cases[] = {
      {qemu, {"q", "-kernel", kernel}, "/sbin/init", true},
      {qemu, {"q", "file=/home/a/.docker/desktop/vms/0/data/Docker.raw"}, "/x", true},
      {"/usr/bin/qemu-system-aarch64", {}, "/opt/docker-desktop/bin/com.docker.virtualization", true},
      {qemu, {"q", "-hda", "windows.img"}, "/usr/bin/virt-manager", false},
      {"/usr/bin/vim", {"vim", kernel}, "/x", false}};
  const std::string entry = "/usr/share/applications/docker-desktop.desktop";
  for (const auto& [path, args, parent, isDockers] : cases) {
    Snapshot m = machine();
    add(m, 50, 1, {"parent"}).path = parent;
    Proc& vm = add(m, 51, 50, args);
    vm.path = path;
    vm.footprint = vm.resident = 2 * gigabyte;
    EXPECT_EQ(dockerVM(m) != nullptr, isDockers) << path << " below " << parent;
    m.apps = {{50, "Docker Desktop", "docker-desktop", entry, false}};
    m.containerLoad = {.count = 1, .bytes = 5 * gigabyte};
    const Finding found = only(docker(m));
    EXPECT_EQ(found.title, isDockers ? "Docker uses 2.0 GB of memory" : "Docker uses 5.0 GB of memory");
    EXPECT_EQ(found.icon, isDockers ? entry : "shippingbox");
    if (isDockers) {
      EXPECT_EQ(found.actions.front().fix, Fix{QuitApp{"docker-desktop"}});
    }
  }
}

using Simulators = RuleTest;

TEST_F(Simulators, AreOneCardThatShutsThemDown) {
  const std::string folder = "/Users/x/Library/Developer/CoreSimulator/Devices/";
  const std::string one = "11111111-0000-0000-0000-000000000000";
  const std::string two = "22222222-0000-0000-0000-000000000000";
  around.devices = {{folder + one + "/device.plist", "iPhone 17"}, {folder + two + "/device.plist", "iPad"}};
  const auto launch = [&](Pid pid, const std::string& list, double age) -> Proc& {
    return add(m, pid, 1, {"/usr/libexec/launchd_sim", list}, age);
  };
  const std::string plist = "/data/launchd_bootstrap.plist";
  launch(50, folder + one + plist, 7'199).footprint = 10 * megabyte;
  add(m, 51, 50, {"SpringBoard"}).footprint = 200 * megabyte;
  m.index();
  const Finding single = only(simulators(m, around));
  EXPECT_THAT(single.actions, ElementsAre(Action{"Shut down iPhone 17", {SimShutdown{one}}}));
  EXPECT_EQ(std::tie(single.title, single.detail, single.summary, single.subject, single.metric, single.icon),
            std::tuple("1 Xcode simulator uses 210 MB",
                       "iPhone 17 has been on for 1 hour. Shut it down if you are not testing on it.",
                       "iPhone 17 has been on for 1 hour.", "Xcode simulators", "210 MB", "iphone"));
  EXPECT_EQ(single.impact, 210.0 / (16 * 1024));

  launch(60, folder + two + plist, 86'400 * 5);
  launch(61, folder + "33333333/launchd_bootstrap.plist", 60);  // unknown device
  launch(62, "/elsewhere/" + one, 60);
  launch(63, folder, 60);
  launch(64, folder + two + "/x", 60).uid = 0;
  add(m, 65, 1, {"launchd_sim"});
  m.index();
  around.simctl = false;
  const Finding both = only(simulators(m, around));
  EXPECT_EQ(
      std::tie(both.title, both.detail, both.summary),
      std::tuple("2 Xcode simulators use 210 MB",
                 "iPad and iPhone 17 have been on for 5 days. Shut them down if you are not testing on them.",
                 "iPad and iPhone 17 have been on for 5 days."));
  EXPECT_THAT(both.actions, IsEmpty()) << "nothing that could shut them down";
  for (Pid pid = 100; pid < 170; ++pid) {
    const std::string udid = "00000000-0000-0000-0000-000000000" + std::to_string(pid);
    around.devices[folder + udid + "/device.plist"] = "Nr" + udid;
    launch(pid, folder + udid + plist, 60);
  }
  m.index();
  const std::string many = only(simulators(m, around)).detail;
  EXPECT_EQ(std::ranges::count(many, 'N'), 64) << "of 72";
  around.devices.clear();
  EXPECT_THAT(simulators(m, around), IsEmpty());
}

}  // namespace
}  // namespace tarnwick
