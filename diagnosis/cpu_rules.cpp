// Rules about processes: those that use the processor now, and those that keep the machine awake.
#include <fmt/ranges.h>

#include <algorithm>
#include <span>

#include "diagnosis/attribution.h"
#include "diagnosis/browser_names.h"
#include "diagnosis/detect.h"
#include "diagnosis/machine_share.h"
#include "diagnosis/process_groups.h"
#include "diagnosis/process_kinds.h"
#include "diagnosis/system_services.h"
#include "records/formatted.h"
#include "records/utf8.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

constexpr double idleCores = 0.01;
constexpr double awakeSeconds = 3'600;
constexpr std::size_t evidenceCharacters = 300;

ProcessGroups busyGroups(const Snapshot& snapshot, const Self& self, Starters& starters) {
  const bool safariRuns = isSafariRunning(snapshot);
  const Proc* vm = dockerVM(snapshot);
  ProcessGroups groups;
  for (const auto& [pid, proc] : snapshot.procs) {
    if (!(proc.cpu > idleCores) || pid == self.pid || &proc == vm) continue;
    if (vm == nullptr && proc.inContainer) continue;  // the docker rule's
    if (browserOf(proc, safariRuns) || serviceOf(proc.name()) != nullptr) continue;
    groups.add(proc, starters);
  }
  return groups;
}

// What every finding of this rule has; the rest is said by one of the three below.
Finding groupFinding(std::string_view key, const ProcessGroup& group, const Snapshot& snapshot) {
  Finding finding;
  finding.id = formatted("cpu:{}", key);
  finding.bucket = Bucket::now;
  finding.metric = pct(group.cpu, snapshot);
  finding.impact = processorShare(group.cpu, snapshot);
  return finding;
}

void describeApp(const ProcessGroup& group, const Snapshot& snapshot, Finding& finding) {
  const std::string& name = *group.root->app;
  const RunningApp* app = runningApp(name, snapshot);
  finding.title = name + " is busy";
  finding.detail = formatted("It runs {}.", plural(group.count, "process"));
  finding.subject = name;
  finding.summary = "It takes processor time from your other apps.";
  finding.icon = app != nullptr ? app->path : "app";
}

void describeBackground(const ProcessGroup& group, Finding& finding) {
  const Proc& root = *group.root;
  const std::string command = commandLine(root);
  finding.title = "A background process is busy";
  finding.detail =
      formatted("Its name is “{}”. It runs {}.", shortenedCommand(command), plural(group.count, "process"));
  finding.evidence = formatted("A background process. No app or terminal started it.\nCommand: {}\nPath: {}",
                               firstCharacters(command, evidenceCharacters), root.path);
  finding.subject = std::string(root.name());
  finding.summary = formatted("Its name is “{}”.", root.name());
  finding.icon = "gearshape";
}

// Work that the user, an application or Claude Code started.
void describeWork(const Starter& start, const Snapshot& snapshot, Surroundings& surroundings,
                  Finding& finding) {
  const Proc& root = *start.root;
  const std::string& who = *start.who;
  const bool byUser = who == "you";
  const std::string command = commandLine(root);
  const std::string shown = shortenedCommand(command);
  const std::string_view kind = workKind(shown).value_or("a command");
  const double age = secondsBetween(root.started, snapshot.now);

  std::optional<Git> git;
  if (!root.cwd.empty()) git = surroundings.git(projectRoot(root.cwd, surroundings));
  std::optional<ClaudeWork> work;
  if (start.claude) work = surroundings.claudeSession(*start.claude);

  finding.title = byUser ? formatted("You are running {}", kind) : formatted("{} is running {}", who, kind);
  finding.detail = formatted("{} The command is “{}”.{} It stops when the command ends.",
                             startedBy(start, age, work, surroundings), shown,
                             git ? formatted(" Project: {}, branch {}.", git->repo, git->branch) : "");
  finding.evidence = facts(who, git, work, {"Command: " + firstCharacters(command, evidenceCharacters)});
  finding.subject = byUser ? formatted("your {}", kind) : formatted("{} from {}", kind, who);
  finding.summary = formatted("“{}” started {} ago. It stops when it ends.", shown, ago(age));
  finding.icon = "terminal";
}

// A `caffeinate` that nothing ends: its arguments are flags only, without a time limit (t) or a process to
// wait for (w).
bool isEndless(const Proc& proc) {
  const auto endless = [](const std::string& arg) {
    return arg.starts_with('-') && arg.find_first_of("tw") == std::string::npos;
  };
  return std::all_of(proc.args.begin() + (proc.args.empty() ? 0 : 1), proc.args.end(), endless);
}

Finding awakeFinding(const Proc& proc, const Starter& start, const Snapshot& snapshot,
                     const std::set<Pid>& termed, Surroundings& surroundings) {
  std::span<const std::string> arguments(proc.args);
  if (!arguments.empty()) arguments = arguments.subspan(1);
  const std::string flags = firstCharacters(formatted("{}", fmt::join(arguments, " ")), evidenceCharacters);
  const std::string whoRan = !start.who ? "A tool" : *start.who == "you" ? "You ran" : *start.who + " ran";
  return {.id = formatted("caffeinate:{}", proc.pid),
          .bucket = Bucket::leftovers,
          .title = "Your Mac is not allowed to sleep",
          .detail = formatted("{} “caffeinate {}” on {}. It keeps the Mac{} awake until you stop it.", whoRan,
                              flags, surroundings.mediumDate(proc.started),
                              flags.find('d') != std::string::npos ? " and the screen" : ""),
          .actions = {stop(proc, termed, "Let the Mac sleep")},
          .subject = "caffeinate",
          .summary = formatted("{} “caffeinate” {} ago. It has no time limit.", whoRan,
                               ago(secondsBetween(proc.started, snapshot.now))),
          .icon = "cup.and.saucer",
          .impact = 0.001};
}

}  // namespace

std::vector<Finding> cpuHogs(const Snapshot& snapshot, Surroundings& surroundings) {
  Starters starters(snapshot);
  const ProcessGroups groups = busyGroups(snapshot, surroundings.self(), starters);
  std::vector<Finding> found;
  for (const auto& [name, group] : groups.apps) {
    if (group.cpu < busyCores) continue;
    describeApp(group, snapshot, found.emplace_back(groupFinding(name, group, snapshot)));
  }
  for (const auto& [pid, group] : groups.jobs) {
    if (group.cpu < busyCores) continue;
    Finding& finding = found.emplace_back(groupFinding(formatted("pid:{}", pid), group, snapshot));
    if (const Starter start = starters.of(*group.root); start.who) {
      describeWork(start, snapshot, surroundings, finding);
    } else {
      describeBackground(group, finding);
    }
  }
  return found;
}

std::vector<Finding> caffeinates(const Snapshot& snapshot, const std::set<Pid>& termed,
                                 Surroundings& surroundings) {
  const Self& self = surroundings.self();
  Starters starters(snapshot);
  std::vector<Finding> found;
  for (const auto& [pid, proc] : snapshot.procs) {
    const bool old = secondsBetween(proc.started, snapshot.now) > awakeSeconds;
    if (!old || proc.uid != self.uid || proc.name() != "caffeinate" || !isEndless(proc)) continue;
    found.push_back(awakeFinding(proc, starters.of(proc), snapshot, termed, surroundings));
  }
  return found;
}

}  // namespace tarnwick
