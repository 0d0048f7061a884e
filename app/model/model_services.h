// What the model needs from outside itself. `main` makes one; it must outlive the executor's last task.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "diagnosis/biggest_users.h"
#include "records/finding.h"
#include "records/snapshot.h"

namespace tarnwick {

struct Check {
  Snapshot snapshot;
  std::vector<Finding> found;
  bool seen = true;                       // false: nothing can be said about the machine
  std::vector<std::string> leftOut = {};  // who did not answer in time, as a user would call them
  BiggestUsers users = {};                // no rows unless some were wanted
};

class ModelServices {
 public:
  virtual ~ModelServices() = default;

  // Samples the machine for one second and runs the rules over it. Background thread, one at a time.
  virtual Check check(const std::set<Pid>& termed) = 0;

  // Forgets what Docker and the browsers answered, so that the next check asks them again. Main thread or
  // a remedy's thread, never while a check runs.
  virtual void resetCaches() = 0;

  // Carries out a remedy; absent when it worked, else the message for the user. Background thread, or
  // main thread for the two remedies that only open something.
  virtual std::optional<std::string> apply(const Fix& fix) = 0;

  // The path of this program; absent when it cannot be told. Main thread.
  virtual std::optional<std::string> ownExecutable() = 0;

  // What a short-lived child, started from `executable`, guesses about that evidence; valid UTF-8, empty when
  // it gives no answer. Blocks until the child has ended. Background threads, several at once.
  virtual std::string explainByChild(const std::string& executable, const std::string& evidence) = 0;

  // Hands memory that is free back to the system. Main thread.
  virtual void freeMemory() = 0;

  // The time of day. Any thread.
  virtual Timestamp now() = 0;
};

}  // namespace tarnwick
