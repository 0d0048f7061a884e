// The two questions that a check asks of the running browsers. Nothing here reports an error: a browser that
// does not answer is unknown or absent. Any thread but the main one: calls block.
#pragma once

#include <optional>
#include <string>

#include "records/snapshot.h"

namespace tarnwick {

class BrowserQuestions {
 public:
  virtual ~BrowserQuestions() = default;

  // May this program script that browser? Asks the system, never the user.
  virtual Access access(const std::string& bundleID) = 0;

  // Facts about the open tabs; absent when they cannot be read.
  virtual std::optional<Tabs> readTabs(const std::string& bundleID) = 0;
};

}  // namespace tarnwick
