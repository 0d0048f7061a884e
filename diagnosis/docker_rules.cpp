// Rules about development machinery that stays up: Docker's virtual machine and Xcode simulators.

#include <algorithm>
#include <limits>

#include "diagnosis/attribution.h"
#include "diagnosis/detect.h"
#include "diagnosis/machine_share.h"
#include "diagnosis/process_kinds.h"
#include "records/checked.h"
#include "records/formatted.h"
#include "records/limits.h"
#include "records/utf8.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

constexpr std::string_view dockerID = "com.docker.docker";
constexpr std::string_view dockerEntry = "docker-desktop";  // its desktop entry on Linux
constexpr std::uint64_t largeBytes = 1'073'741'824;         // 1 GiB
constexpr double noteworthyCores = 0.5;
constexpr std::size_t mostStopActions = 3;
constexpr std::size_t udidLength = 36;

// The whole percentage, truncated. Beyond 160 petabytes the division comes first, so that nothing wraps.
std::uint64_t wholePercentage(std::uint64_t part, std::uint64_t whole) {
  const std::uint64_t most = std::numeric_limits<std::uint64_t>::max() / 100;
  return part <= most ? part * 100 / std::max<std::uint64_t>(whole, 1)
                      : part / std::max<std::uint64_t>(whole / 100, 1);
}

// Most of it lies compressed or on disk: the footprint is more than twice the resident size.
bool isMostlySwapped(const Proc& vm) {
  return vm.footprint > vm.resident && vm.footprint - vm.resident > vm.resident;
}

// The machine of Docker Desktop for Linux is an emulator of the system's that it started. The machine's disk
// or kernel, or else its parent, tells whose it is.
bool isDesktopMachine(const Proc& proc, const Snapshot& snapshot) {
  constexpr std::string_view desktop = "/opt/docker-desktop/";
  constexpr std::string_view emulator = "qemu-system-";
  if (!proc.path.starts_with("/usr/bin/qemu-") && !proc.path.starts_with(desktop)) return false;
  if (!lastPathComponent(proc.path).starts_with(emulator)) return false;
  const auto parent = snapshot.procs.find(proc.ppid);
  if (parent != snapshot.procs.end() && parent->second.path.starts_with(desktop)) return true;
  return std::any_of(proc.args.begin(), proc.args.end(), [&](const std::string& arg) {
    return arg.find(desktop) != std::string::npos || arg.find("/.docker/desktop/") != std::string::npos;
  });
}

void takeLarger(const Proc*& largest, const Proc& proc) {
  if (largest == nullptr || proc.footprint > largest->footprint) largest = &proc;
}

// For how long a container is up, from the engine's words: "Up 3 hours (healthy)" gives "3 hours".
std::string upTime(std::string status) {
  constexpr std::string_view up = "Up ";
  constexpr std::string_view blanks = " \t\n\v\f\r";
  for (std::size_t at = status.find(up); at != std::string::npos; at = status.find(up, at)) {
    status.erase(at, up.size());
  }
  status.resize(std::min(status.find('('), status.size()));
  const std::size_t first = std::min(status.find_first_not_of(blanks), status.size());
  return status.substr(first, status.find_last_not_of(blanks) + 1 - first);
}

// Stops of the containers that hold most.
std::vector<Action> stopActions(const Snapshot& snapshot) {
  std::vector<const Container*> biggest;
  for (const Container& container : snapshot.containers) biggest.push_back(&container);
  std::stable_sort(biggest.begin(), biggest.end(),
                   [](const Container* a, const Container* b) { return a->mem > b->mem; });
  biggest.resize(std::min(biggest.size(), mostStopActions));

  std::vector<Action> actions;
  for (const Container* container : biggest) {
    const std::string up = upTime(container->status);
    actions.push_back({formatted("Stop {} ({}, {}{})", container->name, dbKind(container->image),
                                 size(container->mem), up.empty() ? "" : ", on for " + up),
                       {DockerStop{container->id}}});
  }
  return actions;
}

// The application around the virtual machine; null when it is not among the running ones.
const RunningApp* dockerApp(const Snapshot& snapshot) {
  const auto app = std::find_if(snapshot.apps.begin(), snapshot.apps.end(), [](const RunningApp& a) {
    return a.bundleID == dockerID || a.bundleID == dockerEntry;
  });
  return app == snapshot.apps.end() ? nullptr : &*app;
}

std::vector<Action> quitAndStopActions(const Snapshot& snapshot) {
  std::vector<Action> actions{quitDocker(snapshot)};
  for (Action& stop : stopActions(snapshot)) actions.push_back(std::move(stop));
  return actions;
}

// What a virtual machine and the containers without one have in common.
struct Load {
  std::uint64_t bytes = 0;
  double cpu = 0;  // cores' worth

  bool isNoteworthy() const { return bytes > largeBytes || cpu >= busyCores; }
};

// All but the sentences and the remedies.
Finding loadFinding(const Load& load, const Snapshot& snapshot) {
  return {.id = "docker",
          .bucket = Bucket::always,
          .title = formatted("Docker uses {} of memory", size(load.bytes)),
          .bytes = load.bytes,
          .subject = "Docker",
          .metric = formatted("{}% of memory", wholePercentage(load.bytes, snapshot.ram)),
          .icon = "shippingbox",
          .impact = std::max(processorShare(load.cpu, snapshot), memoryShare(load.bytes, snapshot))};
}

// Containers without a virtual machine. Their engine is a service of the system and keeps nothing.
Finding containersFinding(const ContainerLoad& load, const Snapshot& snapshot) {
  const bool one = load.count == 1;
  const std::string_view they = one ? "It" : "They";
  const std::string_view use = one ? "uses" : "use";
  Finding finding = loadFinding({load.bytes, load.cpu}, snapshot);
  finding.summary = formatted("Your {} {} {}.", plural(load.count, "container"), use, size(load.bytes));
  if (load.cpu >= noteworthyCores) {
    finding.summary += formatted(" {} also {} {} now.", they, use, pct(load.cpu, snapshot));
  }
  finding.detail = formatted("{} Stop {}.", finding.summary,
                             one ? "it if you do not need it" : "those that you do not need");
  finding.actions = stopActions(snapshot);
  return finding;
}

Finding dockerFinding(const Proc& vm, const Snapshot& snapshot) {
  std::uint64_t needed = snapshot.moreContainers.bytes;
  for (const Container& container : snapshot.containers) needed = saturatingAdd(needed, container.mem);
  const bool alone = snapshot.containers.empty();
  const auto count = static_cast<std::int64_t>(snapshot.containers.size()) + snapshot.moreContainers.count;
  const bool works = vm.cpu >= noteworthyCores;
  const std::string share = works ? pct(vm.cpu, snapshot) : std::string();

  std::string detail =
      alone ? "Docker keeps this memory for its Linux system, even when your containers need less."
            : formatted("Your {} need only {}. Docker keeps the rest for itself.", plural(count, "container"),
                        size(needed));
  if (isMostlySwapped(vm)) {
    detail += " Most of that memory is now compressed or moved to disk, and that makes the Mac slower.";
  }
  if (works) detail += formatted(" Docker also uses {} right now, for containers that are working.", share);
  detail += " Quit Docker to free all of it.";

  std::string summary = alone
                            ? "Docker keeps this memory for its Linux system."
                            : formatted("Your containers need only {}. Docker keeps the rest.", size(needed));
  if (works) summary += formatted(" It also uses {} now.", share);

  const RunningApp* app = dockerApp(snapshot);
  Finding finding = loadFinding({vm.footprint, vm.cpu}, snapshot);
  finding.detail = std::move(detail);
  finding.summary = std::move(summary);
  finding.actions = quitAndStopActions(snapshot);
  if (app != nullptr) finding.icon = app->path;
  return finding;
}

// One running simulator.
struct Simulator {
  std::string name;
  std::string udid;
  const Proc* launcher = nullptr;
};

// The simulator that a simulator's launch process belongs to; absent when its device cannot be found.
std::optional<Simulator> simulatorOf(const Proc& launcher, Surroundings& surroundings) {
  constexpr std::string_view folder = "/Devices/";
  if (launcher.args.size() < 2) return std::nullopt;
  const std::string& plist = launcher.args[1];
  const std::size_t at = plist.find(folder);
  if (at == std::string::npos) return std::nullopt;
  const std::string udid = firstCharacters(std::string_view(plist).substr(at + folder.size()), udidLength);
  if (udid.empty()) return std::nullopt;
  const auto name = surroundings.deviceName(plist.substr(0, at + folder.size()) + udid + "/device.plist");
  if (!name) return std::nullopt;
  return Simulator{*name, udid, &launcher};
}

// By device name, devices of one name by pid.
std::vector<Simulator> runningSimulators(const Snapshot& snapshot, Surroundings& surroundings) {
  const Self& self = surroundings.self();
  std::vector<Simulator> all;
  for (const auto& [pid, proc] : snapshot.procs) {
    if (proc.uid != self.uid || proc.name() != "launchd_sim") continue;
    if (auto simulator = simulatorOf(proc, surroundings)) all.push_back(std::move(*simulator));
  }
  std::stable_sort(all.begin(), all.end(),
                   [](const Simulator& a, const Simulator& b) { return a.name < b.name; });
  return all;
}

std::uint64_t memoryOf(const std::vector<Simulator>& all, const Snapshot& snapshot) {
  TreeMemory trees(snapshot);
  std::uint64_t memory = 0;
  for (const Simulator& simulator : all) memory = saturatingAdd(memory, trees.of(*simulator.launcher));
  return memory;
}

Finding simulatorsFinding(const std::vector<Simulator>& all, const Snapshot& snapshot, bool canShutDown) {
  std::vector<std::string> names;
  std::vector<Action> actions;
  Timestamp earliest = all.front().launcher->started;
  for (const Simulator& simulator : all) {
    earliest = std::min(earliest, simulator.launcher->started);
    if (names.size() == mostNamedSimulators) continue;
    names.push_back(simulator.name);
    if (canShutDown) actions.push_back({"Shut down " + simulator.name, {SimShutdown{simulator.udid}}});
  }
  const std::uint64_t memory = memoryOf(all, snapshot);
  const bool one = all.size() == 1;
  const std::string_view them = one ? "it" : "them";
  const std::string on = formatted("{} {} been on for {}.", list(names), one ? "has" : "have",
                                   ago(secondsBetween(earliest, snapshot.now)));
  return {.id = "simulators",
          .bucket = Bucket::always,
          .title = formatted("{} {} {}", plural(static_cast<std::int64_t>(all.size()), "Xcode simulator"),
                             one ? "uses" : "use", size(memory)),
          .detail = formatted("{0} Shut {1} down if you are not testing on {1}.", on, them),
          .bytes = memory,
          .actions = std::move(actions),
          .subject = "Xcode simulators",
          .summary = on,
          .metric = size(memory),
          .icon = "iphone",
          .impact = memoryShare(memory, snapshot)};
}

}  // namespace

const Proc* dockerVM(const Snapshot& snapshot) {
  const Proc* vm = nullptr;
  const Proc* desktop = nullptr;
  for (const auto& [pid, proc] : snapshot.procs) {
    if (proc.path.ends_with("/com.apple.Virtualization.VirtualMachine")) takeLarger(vm, proc);
    if (isDesktopMachine(proc, snapshot)) takeLarger(desktop, proc);
  }
  if (vm == nullptr) return desktop;
  // Other programs have virtual machines too: it is Docker's only where Docker runs.
  const bool dockerRuns = std::any_of(snapshot.procs.begin(), snapshot.procs.end(), [](const auto& entry) {
    return entry.second.path.find("/Docker.app/") != std::string::npos;
  });
  return dockerRuns ? vm : nullptr;
}

Action quitDocker(const Snapshot& snapshot) {
  const RunningApp* app = dockerApp(snapshot);
  return {"Quit Docker", {QuitApp{app == nullptr ? std::string(dockerID) : app->bundleID}}};
}

std::vector<Finding> docker(const Snapshot& snapshot) {
  if (const Proc* vm = dockerVM(snapshot)) {
    if (!Load{vm->footprint, vm->cpu}.isNoteworthy()) return {};
    return {dockerFinding(*vm, snapshot)};
  }
  const auto& load = snapshot.containerLoad;
  if (!load || !Load{load->bytes, load->cpu}.isNoteworthy()) return {};
  return {containersFinding(*load, snapshot)};
}

std::vector<Finding> simulators(const Snapshot& snapshot, Surroundings& surroundings) {
  const std::vector<Simulator> all = runningSimulators(snapshot, surroundings);
  if (all.empty()) return {};
  return {simulatorsFinding(all, snapshot, surroundings.hasSimctl())};
}

}  // namespace tarnwick
