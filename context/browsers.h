// The running browsers, as far as the system lets us talk to them: beside what a check asks, what remedies
// have them do. Nothing here reports an error: a browser that does not answer is absent or false. Any
// thread but the main one: calls block, one of them until the user has answered the system's question.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "sampling/browser_questions.h"
#include "sampling/tools/tool_runner.h"

namespace tarnwick {

class Browsers : public BrowserQuestions {
 public:
  // Closes the tabs that repeat an earlier one. True when the browser did it.
  virtual bool closeDuplicates(const std::string& bundleID) = 0;

  // Opens a page in a new tab. True when the browser did it.
  virtual bool openPage(const std::string& url, const std::string& bundleID) = 0;

  // Has the system ask the user for the permission, where it was not asked yet. True when it is given.
  virtual bool askAccess(const std::string& bundleID) = 0;
};

// Those of this system. `tools` outlives the result.
std::unique_ptr<Browsers> systemBrowsers(ToolRunner& tools);

// The permission behind the status with which macOS answers whether this program may automate another one.
// Everything that is no clear answer, such as that the other program does not run, is unknown.
constexpr Access accessFromStatus(std::int32_t status) {
  constexpr std::int32_t notPermitted = -1743;
  constexpr std::int32_t wouldRequireConsent = -1744;
  if (status == 0) return Access::allowed;
  if (status == notPermitted) return Access::denied;
  return status == wouldRequireConsent ? Access::notAsked : Access::unknown;
}

}  // namespace tarnwick
