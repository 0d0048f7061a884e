// Browsers with prepared answers that count how often they are scripted.
#pragma once

#include "sampling/browser_questions.h"
#include "tests/support/testing.h"

namespace tarnwick {

struct FakeBrowsers : BrowserQuestions {
  std::map<std::string, Access> permissions;  // unknown for any other browser
  std::map<std::string, Tabs> tabs;           // unreadable for any other browser
  int tabsRead = 0;

  Access access(const std::string& bundleID) override {
    const auto found = permissions.find(bundleID);
    return found == permissions.end() ? Access::unknown : found->second;
  }
  std::optional<Tabs> readTabs(const std::string& bundleID) override {
    ++tabsRead;
    const auto found = tabs.find(bundleID);
    return found == tabs.end() ? std::nullopt : std::optional(found->second);
  }
};

}  // namespace tarnwick
