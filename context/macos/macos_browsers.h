// The browsers on macOS: their tabs through one Apple event, or through AppleScript where a browser has no
// codes for that or does not answer; the remedies always through AppleScript. Scripts run in an outside tool,
// and not at all while tools are off.
#pragma once

#include <string>

#include "context/browsers.h"
#include "sampling/tools/tool_runner.h"

namespace tarnwick {

class MacosBrowsers final : public Browsers {
 public:
  // A script may take so long, in seconds: closing hundreds of tabs is no quick query.
  static constexpr double scriptSeconds = 60;

  // `tools` must outlive this object.
  explicit MacosBrowsers(ToolRunner& tools) : tools_(tools) {}

  Access access(const std::string& bundleID) override;
  std::optional<Tabs> readTabs(const std::string& bundleID) override;
  bool closeDuplicates(const std::string& bundleID) override;
  bool openPage(const std::string& url, const std::string& bundleID) override;
  bool askAccess(const std::string& bundleID) override;

 private:
  // What the script printed; absent unless it ended with status 0.
  std::optional<std::string> appleScript(const std::string& source);

  ToolRunner& tools_;
};

}  // namespace tarnwick
