#include "context/macos/macos_browsers.h"

#include <memory>
#include <utility>

#include "context/macos/apple_events.h"
#include "context/tabs.h"
#include "sampling/tools/tool_places.h"

namespace tarnwick {

Access MacosBrowsers::access(const std::string& bundleID) {
  return accessFromStatus(automationStatus(bundleID, false));
}

std::optional<Tabs> MacosBrowsers::readTabs(const std::string& bundleID) {
  if (const auto urls = tabURLs(bundleID)) return condense(*urls);
  const auto printed = appleScript(tabUrlsScript(bundleID));
  if (!printed) return std::nullopt;
  return condense(urlsOfLines(*printed));
}

bool MacosBrowsers::closeDuplicates(const std::string& bundleID) {
  return appleScript(closeDuplicatesScript(bundleID)).has_value();
}

bool MacosBrowsers::openPage(const std::string& url, const std::string& bundleID) {
  return appleScript(openPageScript(url, bundleID)).has_value();
}

bool MacosBrowsers::askAccess(const std::string& bundleID) {
  return accessFromStatus(automationStatus(bundleID, true)) == Access::allowed;
}

std::optional<std::string> MacosBrowsers::appleScript(const std::string& source) {
  DirectFiles files;  // of the system's own volume
  const auto osascript = executable({"/usr/bin/osascript"}, files);
  if (!osascript) return std::nullopt;
  ToolOptions options;
  options.seconds = scriptSeconds;
  const std::unique_ptr<RunningTool> script = tools_.start(*osascript, {"-e", source}, options);
  if (script == nullptr) return std::nullopt;
  ToolResult result = script->result();
  if (result.exitStatus != 0) return std::nullopt;
  return std::move(result.output);
}

std::unique_ptr<Browsers> systemBrowsers(ToolRunner& tools) { return std::make_unique<MacosBrowsers>(tools); }

}  // namespace tarnwick
