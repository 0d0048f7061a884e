#include "tests/support/machines.h"

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
  Proc& vm = m.procs[81];
  // Cores, bytes resident less than half of all, what the detail says in between.
  const std::tuple<double, std::uint64_t, const char*> cases[] = {
      {0.49, 0, ""},
      {0.5, 0, " Docker also uses 5% CPU right now, for containers that are working."},
      {0, 1, " Most of that memory is now compressed or moved to disk, and that makes the Mac slower."}};
  for (const auto& [cpu, less, between] : cases) {
    vm.cpu = cpu;
    vm.resident = vm.footprint / 2 - less;
    const Finding found = only(docker(m));
    EXPECT_EQ(found.detail,
              "Docker keeps this memory for its Linux system, even when your containers need less." +
                  std::string(between) + " Quit Docker to free all of it.");
    EXPECT_THAT(found.summary, StartsWith("Docker keeps this memory for its Linux system."));
  }
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
  EXPECT_EQ(found.impact, 0.5);
  EXPECT_EQ(
      remedies(found),
      "Quit Docker: Cmd-Q com.docker.docker. Stop d (MongoDB, 200 MB): docker stop c4. Stop a-db (Postgres, 100 MB, on for 3 hours): docker stop c1. Stop c (Redis, 100 MB): docker stop c3. ")
      << "a status without a time says nothing";
  m.containers.resize(1);
  m.apps = {{80, "Docker", "com.docker.docker", "/Applications/Docker.app", false}};
  EXPECT_EQ(only(docker(m)).icon, "/Applications/Docker.app");
  EXPECT_THAT(only(docker(m)).detail, StartsWith("Your 1 container need only 100 MB."));
  m.moreContainers = {.count = 2, .bytes = 50 * megabyte};  // not listed
  EXPECT_THAT(only(docker(m)).detail, StartsWith("Your 3 containers need only 150 MB."));
  for (const char* id : {"c2", "c3"}) m.containers.push_back({.id = id, .mem = 1ULL << 63U});
  EXPECT_THAT(only(docker(m)).detail, StartsWith("Your 5 containers need only 17179869184 GB."));
}

// Containers of the system's own kernel stand where the virtual machine stands, and their engine keeps
// nothing.
TEST(Containers, StandWhereTheMachineStands) {
  Snapshot m = machine();
  m.containers = {{"c1", "web", "Up 3 hours", "nginx", 100 * megabyte},
                  {"c2", "db", "Up 2 days (healthy)", "postgres:16", 2 * gigabyte}};
  m.containerLoad = {.count = 5, .bytes = 4 * gigabyte, .cpu = 0.49};  // three are not the engine's
  EXPECT_EQ(glance(docker(m)), "Docker uses 4.0 GB of memory | 25% of memory | ALWAYS ON 0.25\n");
  EXPECT_EQ(only(docker(m)).detail, "Your 5 containers use 4.0 GB. Stop those that you do not need.");
  EXPECT_EQ(
      remedies(only(docker(m))),
      "Stop db (Postgres, 2.0 GB, on for 2 days): docker stop c2. Stop web (container, 100 MB, on for 3 hours): docker stop c1. ");
  m.containerLoad = {.count = 1, .bytes = gigabyte, .cpu = 6};
  EXPECT_EQ(only(docker(m)).detail,
            "Your 1 container uses 1.0 GB. It also uses 60% CPU now. Stop it if you do not need it.");
  EXPECT_EQ(only(docker(m)).impact, 0.6);
  m.containerLoad->count = 2;
  EXPECT_EQ(only(docker(m)).summary, "Your 2 containers use 1.0 GB. They also use 60% CPU now.");
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
  const auto card = [&] {
    m.index();
    const Finding found = only(simulators(m, around));
    return found.title + "; " + found.detail + " " + found.summary + " " + remedies(found);
  };
  const std::string plist = "/data/launchd_bootstrap.plist";
  launch(50, folder + one + plist, 7'199).footprint = 10 * megabyte;
  add(m, 51, 50, {"SpringBoard"}).footprint = 200 * megabyte;
  EXPECT_EQ(
      card(),
      "1 Xcode simulator uses 210 MB; iPhone 17 has been on for 1 hour. Shut it down if you are not testing on it. iPhone 17 has been on for 1 hour. Shut down iPhone 17: simctl shutdown " +
          one + ". ");
  const Finding single = only(simulators(m, around));
  EXPECT_EQ(std::tie(single.subject, single.metric, single.icon, single.impact),
            std::tuple("Xcode simulators", "210 MB", "iphone", 210.0 / (16 * 1024)));

  launch(60, folder + two + plist, 86'400 * 5);
  launch(61, folder + "33333333/launchd_bootstrap.plist", 60);  // unknown device
  launch(62, "/elsewhere/" + one, 60);
  launch(63, folder, 60);
  launch(64, folder + two + "/x", 60).uid = 0;
  add(m, 65, 1, {"launchd_sim"});
  around.simctl = false;  // nothing that could shut them down
  EXPECT_EQ(
      card(),
      "2 Xcode simulators use 210 MB; iPad and iPhone 17 have been on for 5 days. Shut them down if you are not testing on them. iPad and iPhone 17 have been on for 5 days. ");
  for (Pid pid = 100; pid < 170; ++pid) {
    const std::string udid = "00000000-0000-0000-0000-000000000" + std::to_string(pid);
    around.devices[folder + udid + "/device.plist"] = "N" + udid;
    launch(pid, folder + udid + plist, 60);
  }
  EXPECT_EQ(std::ranges::count(card(), 'N'), 2 * 64) << "of 72, in detail and summary";
  around.devices.clear();
  EXPECT_THAT(simulators(m, around), IsEmpty());
}

}  // namespace
