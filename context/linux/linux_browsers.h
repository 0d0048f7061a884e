// Browsers on Linux: no desktop lets one program read or close another's tabs, so nothing is known of them
// and every remedy is refused.
#pragma once

#include "context/browsers.h"

namespace tarnwick {

class LinuxBrowsers final : public Browsers {
 public:
  Access access(const std::string& /*bundleID*/) override { return Access::unknown; }
  std::optional<Tabs> readTabs(const std::string& /*bundleID*/) override { return std::nullopt; }
  bool closeDuplicates(const std::string& /*bundleID*/) override { return false; }
  bool openPage(const std::string& /*url*/, const std::string& /*bundleID*/) override { return false; }
  bool askAccess(const std::string& /*bundleID*/) override { return false; }
};

}  // namespace tarnwick
