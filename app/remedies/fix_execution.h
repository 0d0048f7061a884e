// Carries out one remedy. Everything it touches is behind `FixTargets`, so the sentences and the order are
// the same on every system and tests hand in a fake. Blocks its caller: up to half a minute while the
// container engine answers, or until the user has answered the system's question. Not for the main thread.
#pragma once

#include <optional>
#include <string>

#include "records/finding.h"

namespace tarnwick {

// How sending a signal went.
struct SignalOutcome {
  enum class Kind {
    sent,
    refused,  // the process is gone, another user's, or not the one that was meant
    failed    // the system did not send it
  };
  Kind kind = Kind::refused;
  std::string error = {};  // the system's own words; only when it failed
};

// How shutting down a simulator went.
enum class SimulatorOutcome { done, noXcode, failed };

class FixTargets {
 public:
  virtual ~FixTargets() = default;

  // Sends it to the very process that had this pid and start time, and only while the user owns it. Never
  // asked about a pid below 2.
  virtual SignalOutcome signal(const Signal& signal) = 0;

  // Politely asks every running application with that identifier to quit; there may be none.
  virtual void quitApp(const std::string& bundleID) = 0;

  // The rest is true when it was done.
  virtual bool dockerStop(const std::string& container) = 0;
  virtual SimulatorOutcome simShutdown(const std::string& udid) = 0;
  virtual bool openSettings(const std::string& pane) = 0;
  virtual bool askAutomation(const std::string& bundleID) = 0;
  virtual bool closeDuplicateTabs(const std::string& bundleID) = 0;
  virtual bool openTab(const std::string& bundleID, const std::string& address) = 0;
};

// Absent when the remedy was carried out; otherwise what to tell the user, as it stands. Of several
// remedies each is tried, and the messages of those that failed are joined by line feeds.
std::optional<std::string> apply(const Fix& fix, FixTargets& targets);

}  // namespace tarnwick
