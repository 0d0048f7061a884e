// Rules about the machine's own state: heat, disk, system services, login items.
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <span>
#include <utility>

#include "diagnosis/detect.h"
#include "diagnosis/system_services.h"
#include "records/app_name.h"
#include "records/checked.h"
#include "records/formatted.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

constexpr double servicesBusyCores = 0.5;
constexpr double loginWindowSeconds = 180;  // an app that starts this soon after login started by itself
constexpr std::size_t manyLoginApps = 6;
constexpr std::string_view bundleEnding = ".app";

std::vector<Action> settingsAction(const SystemService& service) {
  if (!service.settings) return {};
  return {{std::string(service.settings->label), {OpenSettings{std::string(service.settings->id)}}}};
}

Finding serviceFinding(const SystemService& service, double cores, const Snapshot& snapshot) {
  const std::string_view word = service.title.substr(0, service.title.find(' '));
  return {.id = formatted("service:{}", service.title),
          .bucket = Bucket::now,
          .title = std::string(service.title),
          .detail = formatted("{} {}", service.why, service.fix),
          .actions = settingsAction(service),
          .subject = std::string(word),
          .summary = "This is normal, and it stops by itself when it is done.",
          .metric = pct(cores, snapshot),
          .icon = std::string(service.icon),
          .impact = cores / std::max(snapshot.cores, 1)};
}

// When the user logged in: the earliest of their login windows.
std::optional<Timestamp> loginTime(const Snapshot& snapshot, const Self& self) {
  std::optional<Timestamp> earliest;
  for (const auto& [pid, proc] : snapshot.procs) {
    if (proc.uid != self.uid || proc.name() != "loginwindow") continue;
    if (!earliest || proc.started < *earliest) earliest = proc.started;
  }
  return earliest;
}

// The memory of each of these application bundles, helpers included. A bundle's path ends with its first
// ".app", so every executable lies in at most one of them and one look at each process is enough.
std::map<std::string_view, std::uint64_t> memoryOfBundles(const std::vector<std::string>& bundles,
                                                          const Snapshot& snapshot) {
  std::map<std::string_view, std::uint64_t> memory;
  for (const std::string& bundle : bundles) memory[bundle] = 0;
  for (const auto& [pid, proc] : snapshot.procs) {
    const std::string_view path = proc.path;
    const std::size_t ending = path.find(".app/");
    if (ending == std::string_view::npos || path.find(bundleEnding) != ending) continue;
    const auto bundle = memory.find(path.substr(0, ending + bundleEnding.size()));
    if (bundle != memory.end()) bundle->second = saturatingAdd(bundle->second, proc.footprint);
  }
  return memory;
}

struct LoginApp {
  std::string name;
  std::string bundle;  // path up to and including the first ".app"
};

// The app as a login item; absent when it does not start by itself.
std::optional<LoginApp> loginApp(const RunningApp& app, const Snapshot& snapshot, const Self& self,
                                 std::optional<Timestamp> login) {
  const auto proc = snapshot.procs.find(app.pid);
  if (app.bundleID.starts_with("com.apple.") || app.pid == self.pid || !app.path.ends_with(bundleEnding) ||
      proc == snapshot.procs.end()) {
    return std::nullopt;
  }
  const std::size_t end = app.path.find(bundleEnding) + bundleEnding.size();
  const bool loginItem = app.path.find("/Contents/Library/LoginItems/") != std::string::npos;
  if (end != app.path.size() && !loginItem) return std::nullopt;
  const Timestamp started = proc->second.started;
  const bool atLogin = login && started >= *login && started < *login + Seconds{loginWindowSeconds};
  if (!app.background && !atLogin) return std::nullopt;

  LoginApp result{app.name, app.path.substr(0, end)};
  if (loginItem) result.name = appName(result.bundle + "/Contents/MacOS/", self.home).value_or(app.name);
  return result;
}

// "A, B, C, D, and 3 more": the first `shown` names and how many follow.
std::string firstNames(const std::vector<std::string>& names, std::size_t shown) {
  return formatted("{}, and {} more", fmt::join(std::span(names).first(shown), ", "), names.size() - shown);
}

}  // namespace

const SystemService* serviceOf(std::string_view processName) {
  for (const SystemService& service : services) {
    if (std::find(service.names.begin(), service.names.end(), processName) != service.names.end()) {
      return &service;
    }
  }
  return nullptr;
}

bool isHot(const Snapshot& snapshot) {
  return snapshot.thermal == ThermalState::serious || snapshot.thermal == ThermalState::critical;
}

bool isDiskLow(const Snapshot& snapshot) {
  return snapshot.diskTotal >= 1 && snapshot.diskFree <= lowDiskBytes;
}

std::vector<Finding> heat(const Snapshot& snapshot) {
  if (!isHot(snapshot)) return {};
  const bool critical = snapshot.thermal == ThermalState::critical;
  return {
      {.id = "heat",
       .bucket = Bucket::now,
       .title = critical ? "Your Mac is very hot, so macOS slows it down a lot"
                         : "Your Mac is hot, so macOS slows it down",
       .detail =
           "To protect the hardware, macOS lowers the processor speed when the Mac gets too hot. Common "
           "causes are an app that works hard, a warm room, or blocked air vents, for example a laptop "
           "on a bed or a sofa. Quit the apps that work hard, and put the Mac on a hard, flat surface. If "
           "you saw “kernel_task” in Activity Monitor, this is the reason.",
       .subject = "Heat",
       .summary = "Quit apps that work hard, and keep the air vents clear.",
       .metric = critical ? "Very hot" : "Hot",
       .icon = "thermometer.high",
       .impact = 1.0}};
}

std::vector<Finding> lowDisk(const Snapshot& snapshot) {
  if (!isDiskLow(snapshot)) return {};
  const std::string free = size(static_cast<std::uint64_t>(std::max<std::int64_t>(snapshot.diskFree, 0)));
  const std::string total = size(static_cast<std::uint64_t>(snapshot.diskTotal));
  return {
      {.id = "disk",
       .bucket = Bucket::always,
       .title = "Your disk is almost full",
       .detail = formatted(
           "Only {} of {} is free. When memory runs short, macOS moves data to the disk. With little free "
           "space, this gets slow, and apps can freeze. Storage settings shows what uses the most space, so "
           "you can remove files you do not need.",
           free, total),
       .actions = {{"Open Storage settings", {OpenSettings{"com.apple.settings.Storage"}}}},
       .subject = "A full disk",
       .summary = "A full disk makes the whole Mac slow when memory runs short.",
       .metric = free + " free",
       .icon = "internaldrive",
       .impact = 0.9}};
}

std::vector<Finding> busyServices(const Snapshot& snapshot, const Self& self) {
  std::map<const SystemService*, double> coresUsed;
  for (const auto& [pid, proc] : snapshot.procs) {
    if (proc.cpu == 0 || proc.uid != self.uid) continue;  // most do nothing, and names are dear to compare
    if (const SystemService* service = serviceOf(proc.name())) coresUsed[service] += proc.cpu;
  }
  std::vector<Finding> found;
  for (const SystemService& service : services) {
    const auto used = coresUsed.find(&service);
    if (used == coresUsed.end() || used->second < servicesBusyCores) continue;
    found.push_back(serviceFinding(service, used->second, snapshot));
  }
  return found;
}

std::vector<Finding> loginApps(const Snapshot& snapshot, const Self& self) {
  const std::optional<Timestamp> login = loginTime(snapshot, self);
  std::map<std::string, std::string> bundleOf;  // by name; of equal names the last one counts
  for (const RunningApp& app : snapshot.apps) {
    if (auto item = loginApp(app, snapshot, self, login)) bundleOf[item->name] = std::move(item->bundle);
  }
  if (bundleOf.size() < manyLoginApps) return {};

  std::vector<std::string> bundles;
  for (const auto& [name, bundle] : bundleOf) bundles.push_back(bundle);
  const std::map<std::string_view, std::uint64_t> memory = memoryOfBundles(bundles, snapshot);
  std::vector<std::string> names;
  std::uint64_t total = 0;
  for (const auto& [name, bundle] : bundleOf) {
    names.push_back(name);
    total = saturatingAdd(total, memory.at(bundle));
  }
  std::stable_sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
    return memory.at(bundleOf.at(a)) > memory.at(bundleOf.at(b));
  });
  return {
      {.id = "login",
       .bucket = Bucket::always,
       .title = formatted("{} apps start by themselves", names.size()),
       .detail = formatted(
           "{} open when you log in or keep running in the background. Together they use {} of memory, and "
           "they make login slower. Turn off the ones you do not need in Login Items.",
           firstNames(names, 4), size(total)),
       .bytes = total,
       .actions = {{"Open Login Items settings", {OpenSettings{"com.apple.LoginItems-Settings.extension"}}}},
       .subject = "Apps that start at login",
       .summary = firstNames(names, 2) + " open when you log in.",
       .metric = size(total),
       .icon = "power",
       .impact = static_cast<double>(total) / static_cast<double>(std::max<std::uint64_t>(snapshot.ram, 1))}};
}

}  // namespace tarnwick
