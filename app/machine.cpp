#include "app/machine.h"

#include <functional>

#include "app/explain/explain_child.h"
#include "app/program/own_process.h"
#include "app/remedies/fix_execution.h"
#include "diagnosis/findings.h"
#include "system/self.h"

namespace tarnwick {
namespace {

std::function<bool()> mayLookUp(PrTitles titles, UserSettings& settings) {
  return [titles, &settings] {
    return titles == PrTitles::thisRun || (titles == PrTitles::whenChosen && settings.prTitles());
  };
}

}  // namespace

Machine::Machine(const Outside& outside, PrTitles titles, Checks checks, std::size_t biggest)
    : outside_(outside),
      biggest_(biggest),
      limitedTools_(outside_.tools, outside_.limits),
      marks_(processorMilliseconds),
      places_(outside_.toolCandidates, &outside_.homeFiles),
      docker_(outside_.transport, outside_.engineSockets),
      git_(limitedTools_, places_, outside_.clock, outside_.files, outside_.self.home,
           mayLookUp(titles, outside_.settings)),
      claude_(outside_.self.home, outside_.files),
      surroundings_(outside_.self, git_, claude_, places_, outside_.files),
      processes_(outside_.sources.processes(), checks),
      scan_({processes_, outside_.sources.machine(), outside_.sources.workspace(), outside_.clock, marks_,
             docker_, [this] { return outside_.sources.dockerRuns(docker_); }, outside_.browsers,
             &outside_.limits, &outside_.homeFiles},
            outside_.self.home) {}

Snapshot Machine::scan(double interval) {
  const Turn turn(turns_);
  outside_.limits.begin();
  outside_.files.mayVisit(outside_.self.home);  // names one that does not answer
  return scan_.scan(interval, biggest_ > 0 ? Everybody::asked : Everybody::whereItMatters);
}

std::vector<Finding> Machine::findingsOf(const Snapshot& snapshot, const std::set<Pid>& termed) {
  surroundings_.beginCheck();
  return tarnwick::findings(snapshot, termed, surroundings_, marks_);
}

void Machine::endCheck() {
  outside_.files.rest();
  outside_.limits.end();
}

std::vector<Finding> Machine::findings(const Snapshot& snapshot, const std::set<Pid>& termed) {
  const Turn turn(turns_);
  std::vector<Finding> found = findingsOf(snapshot, termed);
  endCheck();
  return found;
}

Check Machine::check(const std::set<Pid>& termed) {
  Snapshot snapshot = scan(checkSeconds);
  const Turn turn(turns_);
  std::vector<Finding> found = findingsOf(snapshot, termed);
  BiggestUsers users;
  if (biggest_ > 0) users = biggestUsers(snapshot, biggest_, surroundings_);
  endCheck();
  const bool seen = wasSeen(snapshot);
  return {std::move(snapshot), std::move(found), seen, outside_.limits.leftOut(), std::move(users)};
}

void Machine::resetCaches() {
  const Turn turn(turns_);
  scan_.resetCaches();
}

std::optional<std::string> Machine::apply(const Fix& fix) {
  const Turn turn(turns_);
  return tarnwick::apply(fix, {outside_.targets, docker_, outside_.browsers, outside_.tools, places_});
}

std::optional<std::string> Machine::ownExecutable() { return tarnwick::ownExecutable(); }

std::string Machine::explainByChild(const std::string& executable, const std::string& evidence) {
  return tarnwick::explainByChild(outside_.tools, executable, evidence);
}

void Machine::freeMemory() { tarnwick::freeMemory(); }

}  // namespace tarnwick
