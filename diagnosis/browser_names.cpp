#include "diagnosis/browser_names.h"

#include <algorithm>
#include <string>

namespace tarnwick {
namespace {

template <std::size_t count>
std::optional<std::string_view> lookedUp(std::string_view key, const std::array<NamePair, count>& table) {
  const auto row =
      std::find_if(table.begin(), table.end(), [&](const NamePair& r) { return r.first == key; });
  if (row == table.end()) return std::nullopt;
  return row->second;
}

}  // namespace

std::optional<std::string_view> browserName(std::string_view app) { return lookedUp(app, browserNames); }

std::string_view siteName(std::string_view host) { return lookedUp(host, siteNames).value_or(host); }

bool isSafariRunning(const Snapshot& snapshot) {
  return std::any_of(snapshot.procs.begin(), snapshot.procs.end(),
                     [](const auto& entry) { return entry.second.app == "Safari"; });
}

std::optional<std::string_view> browserOf(const Proc& proc, bool safariRuns) {
  if (proc.app && browserName(*proc.app)) return *proc.app;
  const bool webKit =
      safariRuns && std::any_of(webKitPages.begin(), webKitPages.end(),
                                [&](std::string_view end) { return proc.path.ends_with(end); });
  return webKit ? std::optional<std::string_view>("Safari") : std::nullopt;
}

const RunningApp* runningApp(std::string_view appName, const Snapshot& snapshot) {
  const std::string ending = "/" + std::string(appName) + ".app";
  const auto app = std::find_if(snapshot.apps.begin(), snapshot.apps.end(),
                                [&](const RunningApp& a) { return a.path.ends_with(ending); });
  return app == snapshot.apps.end() ? nullptr : &*app;
}

}  // namespace tarnwick
