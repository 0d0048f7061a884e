#include "app/remedies/fix_execution.h"

#include <memory>
#include <variant>

namespace tarnwick {
namespace {

using Message = std::optional<std::string>;

constexpr double simulatorSeconds = 120;  // a device that is busy takes its time to shut down

constexpr const char* notThatProcess =
    "Not done: the process is gone, belongs to another user, or was replaced.";
constexpr const char* noXcode = "Not done: Xcode is not installed.";

Message unless(bool done, const char* message) { return done ? std::nullopt : Message(message); }

class Execution {
 public:
  explicit Execution(const FixTargets& targets) : targets_(targets) {}

  Message operator()(const Signal& fix) const {
    if (fix.pid < firstOrdinaryPid) return notThatProcess;
    const SignalOutcome outcome = targets_.system.signal(fix);
    if (outcome.kind == SignalOutcome::Kind::failed) return outcome.error;
    return unless(outcome.kind == SignalOutcome::Kind::sent, notThatProcess);
  }
  Message operator()(const QuitApp& fix) const {
    targets_.system.quitApp(fix.bundleID);
    return std::nullopt;
  }
  Message operator()(const DockerStop& fix) const {
    return unless(targets_.docker.stop(fix.container), "Not done: Docker did not stop the container.");
  }
  Message operator()(const SimShutdown& fix) const {
    const std::optional<std::string>& simctl = targets_.places.simctlBin();
    if (!simctl) return noXcode;
    ToolOptions options;
    options.seconds = simulatorSeconds;
    const std::unique_ptr<RunningTool> tool = targets_.tools.start(*simctl, {"shutdown", fix.udid}, options);
    if (tool == nullptr) return noXcode;
    return unless(tool->result().exitStatus == 0, "Not done: the simulator did not shut down.");
  }
  Message operator()(const OpenSettings& fix) const {
    return unless(targets_.system.openSettings(fix.pane), "Not done: System Settings did not open.");
  }
  Message operator()(const AskAutomation& fix) const {
    return unless(targets_.browsers.askAccess(fix.bundleID),
                  "Not allowed. You can change this later in Privacy & Security > Automation.");
  }
  Message operator()(const CloseDuplicateTabs& fix) const {
    return unless(targets_.browsers.closeDuplicates(fix.bundleID), "Not done: the browser did not answer.");
  }
  Message operator()(const OpenTab& fix) const {
    return unless(targets_.browsers.openPage(fix.address, fix.bundleID),
                  "Not done: the browser did not open the page.");
  }
  Message operator()(const All& fix) const {
    return applyInTurn(fix, [this](const Fix& member) { return apply(member, targets_); });
  }

 private:
  const FixTargets& targets_;
};

}  // namespace

std::optional<std::string> apply(const Fix& fix, const FixTargets& targets) {
  return std::visit(Execution(targets), fix.kind);
}

std::optional<std::string> applyInTurn(
    const All& all, const std::function<std::optional<std::string>(const Fix&)>& applyOne) {
  std::optional<std::string> messages;
  for (const Fix& member : all.fixes) {
    const std::optional<std::string> message = applyOne(member);
    if (!message) continue;
    messages = messages ? *messages + "\n" + *message : *message;
  }
  return messages;
}

}  // namespace tarnwick
