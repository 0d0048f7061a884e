#include "app/fix/told_services.h"

#include <variant>
#include <vector>

#include "app/cli/output.h"
#include "app/modes.h"
#include "app/remedies/fix_execution.h"

namespace tarnwick {
namespace {

// In the order in which they are carried out.
void addCommands(const Fix& fix, std::vector<std::string>& commands) {
  if (const auto* all = std::get_if<All>(&fix.kind)) {
    for (const Fix& member : all->fixes) addCommands(member, commands);
  } else {
    commands.push_back(fix.command());
  }
}

}  // namespace

Check ToldServices::check(const std::set<Pid>& termed) {
  Check check;
  {
    const WaitingLine waiting("Checking your Mac…");
    check = machine_.check(termed);
  }
  if (check.seen && !check.leftOut.empty()) complain(leftOutText(check.leftOut));
  return check;
}

std::optional<std::string> ToldServices::apply(const Fix& fix) {
  std::vector<std::string> commands;
  addCommands(fix, commands);
  progress_.begin(std::move(commands));
  const WaitingLine waiting(line_);
  return applyPart(fix);
}

std::optional<std::string> ToldServices::applyPart(const Fix& fix) {
  if (const auto* all = std::get_if<All>(&fix.kind))
    return applyInTurn(*all, [this](const Fix& member) { return applyPart(member); });
  if (!progress_.next()) return "Not done: " + fix.command();
  std::optional<std::string> error = machine_.apply(fix);
  progress_.ended(!error);
  return error;
}

}  // namespace tarnwick
