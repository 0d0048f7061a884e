#include "app/remedies/fix_execution.h"

#include <variant>

namespace tarnwick {
namespace {

using Message = std::optional<std::string>;

constexpr const char* notThatProcess =
    "Not done: the process is gone, belongs to another user, or was replaced.";

Message unless(bool done, const char* message) { return done ? std::nullopt : Message(message); }

class Execution {
 public:
  explicit Execution(FixTargets& targets) : targets_(targets) {}

  Message operator()(const Signal& fix) const {
    if (fix.pid < firstOrdinaryPid) return notThatProcess;
    const SignalOutcome outcome = targets_.signal(fix);
    if (outcome.kind == SignalOutcome::Kind::failed) return outcome.error;
    return unless(outcome.kind == SignalOutcome::Kind::sent, notThatProcess);
  }
  Message operator()(const QuitApp& fix) const {
    targets_.quitApp(fix.bundleID);
    return std::nullopt;
  }
  Message operator()(const DockerStop& fix) const {
    return unless(targets_.dockerStop(fix.container), "Not done: Docker did not stop the container.");
  }
  Message operator()(const SimShutdown& fix) const {
    const SimulatorOutcome outcome = targets_.simShutdown(fix.udid);
    if (outcome == SimulatorOutcome::noXcode) return "Not done: Xcode is not installed.";
    return unless(outcome == SimulatorOutcome::done, "Not done: the simulator did not shut down.");
  }
  Message operator()(const OpenSettings& fix) const {
    return unless(targets_.openSettings(fix.pane), "Not done: System Settings did not open.");
  }
  Message operator()(const AskAutomation& fix) const {
    return unless(targets_.askAutomation(fix.bundleID),
                  "Not allowed. You can change this later in Privacy & Security > Automation.");
  }
  Message operator()(const CloseDuplicateTabs& fix) const {
    return unless(targets_.closeDuplicateTabs(fix.bundleID), "Not done: the browser did not answer.");
  }
  Message operator()(const OpenTab& fix) const {
    return unless(targets_.openTab(fix.bundleID, fix.address),
                  "Not done: the browser did not open the page.");
  }
  Message operator()(const All& fix) const {
    Message messages;
    for (const Fix& member : fix.fixes) {
      const Message message = apply(member, targets_);
      if (!message) continue;
      messages = messages ? *messages + "\n" + *message : *message;
    }
    return messages;
  }

 private:
  FixTargets& targets_;
};

}  // namespace

std::optional<std::string> apply(const Fix& fix, FixTargets& targets) {
  return std::visit(Execution(targets), fix.kind);
}

}  // namespace tarnwick
