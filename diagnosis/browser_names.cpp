#include "diagnosis/browser_names.h"

#include <algorithm>
#include <string>

#include "records/browsers.h"

namespace tarnwick {
std::string_view siteName(std::string_view host) {
  const auto* site = std::ranges::find(siteNames, host, [](const auto& row) { return row.first; });
  return site == siteNames.end() ? host : site->second;
}

bool isSafariRunning(const Snapshot& snapshot) {
  return std::any_of(snapshot.procs.begin(), snapshot.procs.end(),
                     [](const auto& entry) { return entry.second.app == "Safari"; });
}

std::optional<std::string_view> browserOf(const Proc& proc, bool safariRuns) {
  const KnownBrowser* known = proc.app ? browserOfApp(*proc.app) : nullptr;
  if (known != nullptr && (!known->onlyLinux || proc.session != 0)) return *proc.app;
  const bool webKit =
      safariRuns && std::any_of(webKitPages.begin(), webKitPages.end(),
                                [&](std::string_view end) { return proc.path.ends_with(end); });
  return webKit ? std::optional<std::string_view>("Safari") : std::nullopt;
}

const RunningApp* runningApp(std::string_view appName, const Snapshot& snapshot) {
  const std::string ending = "/" + std::string(appName) + ".app";
  const auto app = std::find_if(snapshot.apps.begin(), snapshot.apps.end(), [&](const RunningApp& a) {
    return a.path.ends_with(ending) || (a.path.ends_with(".desktop") && a.name == appName);
  });
  return app == snapshot.apps.end() ? nullptr : &*app;
}

}  // namespace tarnwick
