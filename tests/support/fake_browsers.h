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
    return answerOf(permissions, bundleID).value_or(Access::unknown);
  }
  std::optional<Tabs> readTabs(const std::string& bundleID) override {
    ++tabsRead;
    return answerOf(tabs, bundleID);
  }
};

}  // namespace tarnwick
