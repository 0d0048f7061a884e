#include "sampling/scan.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "records/browsers.h"
#include "records/limits.h"
#include "sampling/decode/memory_saver.h"

namespace tarnwick {
namespace {

constexpr const char* chrome = "com.google.Chrome";
constexpr const char* chromeSettings = "/Library/Application Support/Google/Chrome/Local State";

// Counters that went backwards (the kernel corrects its waiting time now and then) count as not moved.
double busyShare(const CpuTicks& before, const CpuTicks& after) {
  if (before.total == 0) return 0;  // unreadable; the difference would be the time since the start
  const std::uint64_t busy = after.busy > before.busy ? after.busy - before.busy : 0;
  const std::uint64_t total = after.total > before.total ? after.total - before.total : 0;
  const double share = static_cast<double>(busy) / static_cast<double>(std::max<std::uint64_t>(total, 1));
  return std::min(share, 1.0);
}

// Intervals of one second each that begin one after another can hold more work than the processors did in one
// second: the figures together are brought back to what there was.
void limitToCores(PidMap<Proc>& procs, int cores) {
  double sum = 0;
  for (const auto& [pid, proc] : procs) sum += proc.cpu;
  if (cores < 1 || sum <= cores) return;
  for (auto& [pid, proc] : procs) proc.cpu *= cores / sum;
}

// Is the machine busy or short of memory, and do the user's own processes and the containers explain less
// than half of that?
bool isBusyWithOthers(const Snapshot& snapshot) {
  constexpr double busyCores = 1;
  constexpr std::int32_t tightPressure = 2;
  const ContainerLoad containers = snapshot.containerLoad.value_or(ContainerLoad{});
  double cpu = containers.cpu;
  double bytes = static_cast<double>(containers.bytes);
  for (const auto& [pid, proc] : snapshot.procs) {
    if (proc.inContainer) continue;
    cpu += proc.cpu;
    bytes += static_cast<double>(proc.footprint);
  }
  const double work = snapshot.cpuBusy * std::max(snapshot.cores, 1);
  const bool busy = work >= busyCores && cpu < work / 2;
  return busy || (snapshot.pressure >= tightPressure && bytes < static_cast<double>(snapshot.ram) / 2);
}

std::set<std::string> idsOf(const std::vector<ContainerGroup>& groups) {
  std::set<std::string> ids;
  for (const ContainerGroup& group : groups) ids.insert(group.id);
  return ids;
}

bool runs(const std::vector<RunningApp>& apps, std::string_view bundleID) {
  return std::any_of(apps.begin(), apps.end(),
                     [&](const RunningApp& app) { return app.bundleID == bundleID; });
}

// An answer from the future (the clock was set back) is no answer.
bool isYounger(Timestamp at, Timestamp now, double limit) {
  const double age = secondsBetween(at, now);
  return age >= 0 && age < limit;
}

}  // namespace

bool wasSeen(const Snapshot& snapshot) { return !snapshot.procs.empty() && snapshot.ram > 0; }

Scan::Scan(const Sources& sources, std::string home) : sources_(sources), home_(std::move(home)) {}

Snapshot Scan::scan(double interval, Everybody everybody) {
  sources_.marks.mark("start");
  const bool dockerRuns = sources_.dockerRuns();
  Interval sample = sampleProcesses(interval, dockerRuns && dockerIsStale());

  Snapshot snapshot;
  snapshot.procs = std::move(sample.procs);
  snapshot.now = sources_.clock.now();
  snapshot.thermal = sources_.machine.thermal();
  snapshot.index();
  sources_.marks.mark("process scan");

  if (!dockerRuns) dockerCache.reset();
  if (dockerCache) snapshot.containers = dockerCache->list;
  sources_.marks.mark("docker");

  readCounters(snapshot, sample.cpuBusy);
  limitToCores(snapshot.procs, snapshot.cores);
  addContainers(sample.containers, snapshot);
  listBiggest(snapshot);
  readOthers(sample.containers, everybody, snapshot);
  snapshot.apps = sources_.workspace.runningApps();
  readMemorySaver(snapshot);
  sources_.marks.mark("system and apps");

  readBrowsers(snapshot);
  sources_.marks.mark("tabs");
  return snapshot;
}

void Scan::resetCaches() {
  dockerCache.reset();
  tabsCache.clear();
}

bool Scan::dockerIsStale() const {
  if (!dockerCache || !dockerCache->whole) return true;
  const double age = secondsBetween(dockerCache->at, sources_.clock.now());
  return age < 0 || age > dockerSeconds;
}

void Scan::askEngine(const std::vector<ContainerGroup>& measured) {
  const Timestamp now = sources_.clock.now();
  const auto misses = [this] { return sources_.limits == nullptr ? 0 : sources_.limits->misses(); };
  const std::size_t before = misses();
  std::vector<Container> list = sources_.docker.dockerContainers(idsOf(measured), sources_.limits);
  dockerCache = DockerAnswer{now, std::move(list), misses() == before};
}

Scan::Interval Scan::sampleProcesses(double interval, bool askDocker) {
  const double start = sources_.clock.uptime();
  ContainerInterval containers{.before = sources_.machine.containerGroups()};
  const CpuTicks before = sources_.machine.cpuTicks();
  sources_.processes.firstPass();
  sources_.marks.mark("first pass");

  // Here, because the time that the engine takes is then part of the wait.
  if (askDocker) askEngine(containers.before);
  const double elapsed = sources_.clock.uptime() - start;
  sources_.clock.sleep(std::max(interval - elapsed, 0.0));

  const CpuTicks after = sources_.machine.cpuTicks();
  if (!containers.before.empty()) containers.after = sources_.machine.containerGroups();
  containers.seconds = sources_.clock.uptime() - start;
  return {.procs = sources_.processes.secondPass(sources_.clock.now()),
          .cpuBusy = busyShare(before, after),
          .containers = std::move(containers)};
}

void Scan::readOthers(const ContainerInterval& containers, Everybody everybody, Snapshot& snapshot) {
  const bool asked = everybody == Everybody::asked;
  if (!asked && !isBusyWithOthers(snapshot)) return;
  snapshot.others = sources_.processes.others(asked);
  if (!asked) return;
  markOthers(containers, snapshot.others);
  snapshot.userNames = sources_.processes.namesOf(snapshot.others);
}

void Scan::readCounters(Snapshot& snapshot, double cpuBusy) {
  MachineSource& machine = sources_.machine;
  const MemoryState memory = machine.memory();
  snapshot.ram = believed(memory.ram);
  snapshot.swapUsed = believed(memory.swapUsed);
  if (memory.inUse > 0) snapshot.memoryInUse = believed(memory.inUse) + snapshot.swapUsed;
  snapshot.pressure = memory.pressure.value_or(snapshot.pressure);
  snapshot.cores = machine.cores();
  const auto boot = machine.bootTime();
  if (boot) snapshot.uptime = std::max(seconds(snapshot.now) - static_cast<double>(*boot), 0.0);
  snapshot.cpuBusy = cpuBusy;
  readDisk(snapshot);
}

void Scan::readDisk(Snapshot& snapshot) {
  const DiskSpace space = sources_.machine.disk();
  snapshot.diskFree = space.free;
  snapshot.diskTotal = space.total;
  if (space.free > scarceDisk) return;
  const std::int64_t important = sources_.machine.importantCapacity().value_or(0);
  if (important > 0) snapshot.diskFree = important;
}

void Scan::readMemorySaver(Snapshot& snapshot) const {
  if (!runs(snapshot.apps, chrome)) return;
  DirectFiles direct;
  Files& files = sources_.homeFiles == nullptr ? direct : *sources_.homeFiles;
  const auto text = files.readSmallFile(home_ + chromeSettings, mostChromeSettings);
  if (text) snapshot.memorySaver = memorySaverState(*text);
}

void Scan::readBrowsers(Snapshot& snapshot) {
  for (const KnownBrowser& known : knownBrowsers) {
    if (known.bundleID.empty() || !runs(snapshot.apps, known.bundleID)) continue;
    const std::string browser(known.bundleID);
    const Access access = sources_.browsers.access(browser);
    snapshot.access[browser] = access;
    if (access != Access::allowed) continue;
    if (auto tabs = tabsOf(browser)) snapshot.tabs[browser] = std::move(*tabs);
  }
}

std::optional<Tabs> Scan::tabsOf(const std::string& browser) {
  const auto cached = tabsCache.find(browser);
  if (cached != tabsCache.end() && isYounger(cached->second.at, sources_.clock.now(), tabsSeconds)) {
    return cached->second.tabs;
  }
  std::optional<Tabs> tabs = sources_.browsers.readTabs(browser);
  tabsCache[browser] = {sources_.clock.now(), tabs};
  return tabs;
}

}  // namespace tarnwick
