// The running browsers, as far as the system lets us talk to them. Nothing here reports an error: a browser
// that does not answer is absent or false. Any thread but the main one: calls block, one of them until the
// user has answered the system's question.
#pragma once

#include <optional>
#include <string>

#include "records/snapshot.h"

namespace tarnwick {

class Browsers {
 public:
  virtual ~Browsers() = default;

  // May this program script that browser? Asks the system, never the user.
  virtual Access access(const std::string& bundleID) = 0;

  // Facts about the open tabs; absent when they cannot be read.
  virtual std::optional<Tabs> readTabs(const std::string& bundleID) = 0;

  // Closes the tabs that repeat an earlier one. True when the browser did it.
  virtual bool closeDuplicates(const std::string& bundleID) = 0;

  // Opens a page in a new tab. True when the browser did it.
  virtual bool openPage(const std::string& url, const std::string& bundleID) = 0;

  // Has the system ask the user for the permission, where it was not asked yet. True when it is given.
  virtual bool askAccess(const std::string& bundleID) = 0;
};

}  // namespace tarnwick
