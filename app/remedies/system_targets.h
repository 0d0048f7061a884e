// The remedies that only the operating system can carry out. Blocks its caller; one thread at a time.
#pragma once

#include <memory>
#include <string>

#include "records/finding.h"
#include "sampling/live_machine.h"
#include "system/files.h"

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

class SystemTargets {
 public:
  virtual ~SystemTargets() = default;

  // Sends it to the very process that had this pid and start time, and only while the user owns it. Never
  // asked about a pid below 2.
  virtual SignalOutcome signal(const Signal& signal) = 0;

  // Politely asks every running application with that identifier to quit; there may be none.
  virtual void quitApp(const std::string& bundleID) = 0;

  // Is there a desktop that could show what a remedy opens?
  virtual bool hasDesktop() = 0;

  // True when the settings opened.
  virtual bool openSettings(const std::string& pane) = 0;
};

// Those of this system. `sources` are this system's own; they and `files` outlive the result.
std::unique_ptr<SystemTargets> systemTargets(LiveMachine& sources, Files& files, const Self& self);

}  // namespace tarnwick
