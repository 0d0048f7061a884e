// Prints one check of the live machine for the machines' tables: a line "subject TAB fact TAB value" for each
// fact. Subjects are pids, "app NAME", "card ID" and "system". With "quit ID" it quits that application, with
// "remedy ID" it carries out the first remedy of that card.
#include <fmt/format.h>

#include <cmath>
#include <string>
#include <string_view>

#include "app/machine.h"
#include "diagnosis/process_tree.h"
#include "system/posix/file_answers.h"
#include "system/self.h"

namespace {

template <typename Value>
void fact(std::string_view subject, std::string_view name, const Value& value) {
  fmt::print("{}\t{}\t{}\n", subject, name, value);
}

void printProcess(const tarnwick::Proc& proc, tarnwick::Starters& starters, tarnwick::Timestamp moment) {
  const std::string subject = std::to_string(proc.pid);
  const tarnwick::Starter start = starters.of(proc);
  fact(subject, "parent", proc.ppid);
  fact(subject, "path", proc.path);
  fact(subject, "app", proc.app.value_or("none"));
  fact(subject, "who", start.who.value_or("gone"));
  fact(subject, "root", start.root->pid);
  fact(subject, "port", proc.ports.empty() ? 0 : proc.ports.front());
  fact(subject, "megabytes", proc.footprint >> 20U);
  fact(subject, "hours", std::lround(tarnwick::secondsBetween(proc.started, moment) / 3600));
  fact(subject, "container", proc.inContainer ? "yes" : "no");
}

}  // namespace

int main(int argc, char** argv) {
  if (tarnwick::isFileWorker(argc, argv)) return tarnwick::serveFileQuestions();
  const tarnwick::Self self = tarnwick::readSelf(tarnwick::distantMounts());
  tarnwick::RealOutside outside(self, "/proc/self/exe");
  tarnwick::Machine check(outside.parts(), tarnwick::PrTitles::never);
  const tarnwick::Snapshot snapshot = check.scan(tarnwick::Machine::checkSeconds);
  if (argc == 3 && std::string_view(argv[1]) == "quit")
    return check.apply({tarnwick::QuitApp{argv[2]}}) ? 1 : 0;
  tarnwick::Starters starters(snapshot);
  for (const auto& [pid, proc] : snapshot.procs) printProcess(proc, starters, snapshot.now);
  for (const auto& app : snapshot.apps) {
    fact("app " + app.name, "pid", app.pid);
    fact("app " + app.name, "id", app.bundleID);
    fact("app " + app.name, "background", app.background ? "yes" : "no");
  }
  for (const auto& card : check.findings(snapshot, {})) {
    fact("card " + card.id, "title", card.title);
    fact("card " + card.id, "detail", card.detail);
    const bool remedy = argc == 3 && card.id == argv[2] && std::string_view(argv[1]) == "remedy";
    if (remedy && check.apply(card.actions.at(0).fix)) return 1;
  }
  fact("system", "pressure", snapshot.pressure);
  fact("system", "cores", snapshot.cores);
  fact("system", "containers", snapshot.containerLoad ? snapshot.containerLoad->count : 0);
  std::uint64_t bytes = 0;
  for (const auto& [pid, proc] : snapshot.procs) {
    if (proc.path.ends_with("/postgres")) bytes += proc.footprint;
  }
  fact("system", "database megabytes", bytes >> 20U);
}
