#include "sampling/linux/applications.h"

#include <algorithm>
#include <set>
#include <utility>

#include "records/browsers.h"
#include "records/text.h"
#include "sampling/decode/app_unit.h"
#include "sampling/decode/arguments.h"
#include "sampling/decode/launch_command.h"
#include "system/small_file.h"

namespace tarnwick {
namespace {

constexpr std::string_view flatpakFolder = "/app/";
constexpr std::string_view flatpakFacts = "root/.flatpak-info";
constexpr std::size_t pidListLimit = 1'048'576;  // bytes

// The sandbox of a flatpak and its door to the bus.
bool servesFlatpak(std::string_view path) {
  const std::string_view name = lastPathComponent(path);
  return name == "bwrap" || name == "xdg-dbus-proxy";
}

// Browsers go by the names that people and rules know them by, everybody else by their own.
std::string nameOf(const DesktopEntry& entry) {
  const KnownBrowser* browser = browserOfDesktopID(entry.id);
  return browser == nullptr ? entry.name : std::string(browser->app);
}

}  // namespace

Applications::Applications(DesktopEntries& entries, ApplicationPlaces places)
    : places_(std::move(places)), installations_(entries, places_.home), reader_(places_.procRoot) {}

std::optional<std::string> Applications::of(const ProcessFiles& files, const ProcStat& stat,
                                            const std::string& path) {
  if (path.empty()) return std::nullopt;
  const Executable& its = executable(path);
  if (its.installation == nullptr && !its.inFlatpak && !its.isRuntime) return std::nullopt;
  Member member{.start = stat.startTicks, .parent = stat.ppid, .pass = pass_};
  member.entry = entryOf(its, files, stat, path, member);
  if (member.entry == nullptr) return std::nullopt;
  lastShown_ = pass_;
  return nameOf(*(members_[files.pid()] = std::move(member)).entry);
}

const DesktopEntry* Applications::entryOf(const Executable& its, const ProcessFiles& files,
                                          const ProcStat& stat, const std::string& path, Member& member) {
  if (its.installation != nullptr) return ofInstallation(*its.installation, files, path, member);
  if (its.inFlatpak) {
    member.mayBeMain = !servesFlatpak(path);
    if (const DesktopEntry* entry = ofFlatpak(files, member)) return entry;
  }
  return its.isRuntime && hasUnits() ? ofRuntime(files, stat, member) : nullptr;
}

const Applications::Executable& Applications::executable(const std::string& path) {
  const auto known = executables_.find(path);
  if (known != executables_.end()) return known->second;
  return executables_[path] = {
             .installation = installations_.ofExecutable(path),
             .inFlatpak = path.starts_with(flatpakFolder) || servesFlatpak(path),
             .isRuntime = isSharedRuntime(lastPathComponent(path)) || installations_.anyUnknown()};
}

// The unit tells which of several entries it was started by, an office suite's say.
const DesktopEntry* Applications::ofInstallation(const Installations::Installation& from,
                                                 const ProcessFiles& files, const std::string& path,
                                                 Member& member) {
  member.mayBeMain = from.program.empty() || from.program == path;
  const Unit unit = unitOf(files);
  member.unit = unit.folder;
  const auto named = std::ranges::find(from.entries, unit.application, &DesktopEntry::id);
  const bool isBrowser = browserOfDesktopID(from.entries.front().id) != nullptr;
  return isBrowser || named == from.entries.end() ? &from.entries.front() : &*named;
}

const DesktopEntry* Applications::ofFlatpak(const ProcessFiles& files, Member& member) {
  const Unit unit = unitOf(files);
  member.unit = unit.folder;
  std::string id = unit.application;
  std::string_view text = files.read(flatpakFacts.data(), buffer_).value_or(std::string_view());
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (line.starts_with("name=")) id = line.substr(5);
    if (line.starts_with("[Instance]")) break;
  }
  const auto* installation = installations_.ofFlatpak(id);
  return installation == nullptr ? nullptr : &installation->entries.front();
}

const DesktopEntry* Applications::ofRuntime(const ProcessFiles& files, const ProcStat& stat, Member& member) {
  if (stat.terminal != 0) return nullptr;
  const Unit unit = unitOf(files);
  const auto* known = unit.folder.empty() ? nullptr : installations_.interpreted(unit.application);
  if (known == nullptr || !runs(files, known->script) || !isFirst(unit.folder, files.pid(), stat))
    return nullptr;
  member.unit = unit.folder;
  return &known->entry;
}

Applications::Unit Applications::unitOf(const ProcessFiles& files) {
  const auto text = hasUnits() ? files.read("cgroup", buffer_) : std::nullopt;
  auto folder = text ? appUnitFolder(*text) : std::nullopt;
  if (!folder) return {};
  auto id = applicationID(lastPathComponent(*folder));
  return id ? Unit{std::move(*folder), std::move(*id)} : Unit{};
}

// Was a script of that name given to the runtime? An empty name fits everything.
bool Applications::runs(const ProcessFiles& files, const std::string& script) {
  if (script.empty()) return true;
  const auto bytes = files.read("cmdline", buffer_);
  const auto words = bytes ? procArguments(*bytes) : std::vector<std::string>();
  return std::ranges::any_of(words,
                             [&](const std::string& word) { return lastPathComponent(word) == script; });
}

// Is nobody else in the unit older?
bool Applications::isFirst(const std::string& unit, Pid pid, const ProcStat& stat) const {
  for (const char* mount : {"", "/unified", "/systemd"}) {
    const auto list = readSmallFile(places_.cgroupRoot + mount + unit + "/cgroup.procs", pidListLimit);
    std::string_view rest = list ? std::string_view(*list) : std::string_view();
    while (!rest.empty()) {
      const auto other = wholeNumber<Pid>(takeLine(rest));
      if (!other || *other <= 0 || *other == pid) continue;
      std::array<char, 1'024> buffer{};
      const auto text = reader_.read(*other, "stat", buffer);
      const auto its = text ? procStat(*text) : std::nullopt;
      if (its && !its->zombie() && std::pair(its->startTicks, *other) < std::pair(stat.startTicks, pid))
        return false;
    }
  }
  return true;
}

bool Applications::hasUnits() {
  if (!hasUnits_) hasUnits_ = appSlice(places_.cgroupRoot, places_.uid).has_value();
  return *hasUnits_;
}

void Applications::beginPass() {
  ++pass_;
  hasUnits_.reset();
}

void Applications::stillThere(Pid pid, const ProcStat& stat) {
  lastShown_ = pass_;
  const auto member = members_.find(pid);
  if (member == members_.end() || member->second.start != stat.startTicks) return;
  member->second.pass = pass_;
  member->second.parent = stat.ppid;
}

bool Applications::lives(Pid pid, const Member& member) const {
  std::array<char, 1'024> buffer{};
  const auto text = reader_.read(pid, "stat", buffer);
  const auto stat = text ? procStat(*text) : std::nullopt;
  return stat && !stat->zombie() && stat->startTicks == member.start;
}

std::vector<RunningApp> Applications::runningApps() {
  const auto isChild = [&](const Member& member) {
    const auto parent = members_.find(member.parent);
    return parent != members_.end() && parent->second.pass == lastShown_ && parent->second.mayBeMain &&
           parent->second.entry->id == member.entry->id && parent->second.start <= member.start;
  };
  std::vector<std::pair<Pid, const Member*>> mains;
  for (const auto& [pid, member] : members_) {
    if (member.pass == lastShown_ && member.mayBeMain && !isChild(member)) mains.emplace_back(pid, &member);
  }
  std::ranges::sort(mains, {}, [](const auto& main) { return std::pair(main.second->start, main.first); });
  std::set<std::pair<std::string, std::string>> listed;
  std::vector<RunningApp> apps;
  for (const auto& [pid, member] : mains) {
    const DesktopEntry& entry = *member->entry;
    if (listed.contains({entry.id, member->unit}) || !lives(pid, *member)) continue;
    listed.emplace(entry.id, member->unit);
    apps.push_back({.pid = pid,
                    .name = nameOf(entry),
                    .bundleID = entry.id,
                    .path = entry.file,
                    .background = member->unit.ends_with("@autostart.service") || !entry.shown});
  }
  return apps;
}

}  // namespace tarnwick
