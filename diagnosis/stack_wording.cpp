#include "diagnosis/stack_wording.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "diagnosis/attribution.h"
#include "diagnosis/process_kinds.h"
#include "records/formatted.h"
#include "records/utf8.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

constexpr std::size_t shownCommandCharacters = 200;

// Branches that everybody works on: they have no pull request and are never done with.
constexpr std::array<std::string_view, 3> sharedBranches{"main", "master", "develop"};

bool isShared(std::string_view branch) {
  return std::find(sharedBranches.begin(), sharedBranches.end(), branch) != sharedBranches.end();
}

// The servers of one kind.
struct KindTally {
  std::string kind;
  std::int64_t n = 0;
  std::vector<std::uint16_t> ports = {};
};

// In first-seen order.
std::vector<KindTally> talliesOf(const ProjectStack& stack) {
  std::vector<KindTally> tallies;
  std::map<std::string_view, std::size_t> places;  // by kind
  for (const StackServer& server : stack.servers) {
    const auto [place, isNew] = places.try_emplace(server.kind, tallies.size());
    if (isNew) tallies.push_back({server.kind});
    KindTally& tally = tallies[place->second];
    ++tally.n;
    tally.ports.insert(tally.ports.end(), server.proc->ports.begin(), server.proc->ports.end());
  }
  return tallies;
}

// "a Node server", "an API server", "2 Node servers".
std::string counted(std::int64_t n, const std::string& phrase) {
  if (n != 1) return plural(n, phrase);
  const bool vowel =
      !phrase.empty() && std::string_view("AEIOU").find(phrase.front()) != std::string_view::npos;
  return (vowel ? "an " : "a ") + phrase;
}

std::string portsText(const std::vector<std::uint16_t>& ports) {
  std::vector<std::string> numbers;
  numbers.reserve(ports.size());
  for (const std::uint16_t port : ports) numbers.push_back(std::to_string(port));
  return formatted("({} {})", ports.size() == 1 ? "port" : "ports", list(numbers));
}

enum class Ports { shown, hidden };

// What runs: the kinds of servers, then the databases by label.
std::string contents(const ProjectStack& stack, Ports ports) {
  std::vector<std::string> phrases;
  for (const KindTally& tally : talliesOf(stack)) {
    std::string phrase = counted(tally.n, tally.kind);
    if (ports == Ports::shown) phrase += " " + portsText(tally.ports);
    phrases.push_back(std::move(phrase));
  }
  std::map<std::string_view, std::int64_t> byLabel;
  for (const Container* container : stack.containers) ++byLabel[dbKind(container->image)];
  for (const auto& [label, n] : byLabel) phrases.push_back(counted(n, std::string(label) + " database"));
  return list(phrases);
}

// The middle of a card: what the stack belonged to, and whether it may be stopped.
struct Story {
  std::string title;
  std::string middle;  // sentences, each after a blank
  std::string hint;    // likewise; may be empty
};

Story storyWithoutRepository(const ProjectStack& stack, Surroundings& surroundings) {
  return {stack.name + " is still running", " " + startedBy(stack.start, stack.age, stack.work, surroundings),
          ""};
}

Story storyOfBranch(const ProjectStack& stack, const Git& git, Surroundings& surroundings) {
  const bool shared = isShared(git.branch);
  Story story;
  story.title = formatted("{}{} is still running", git.isCopy ? "A copy of " : "", git.repo);
  story.middle = formatted(" Branch {}.", git.branch);
  if (!shared) {
    if (const auto title = surroundings.prTitle(git.slug, git.branch)) {
      story.middle += formatted(" Pull request: “{}”.", *title);
    }
  }
  if (!git.lastCommit.empty()) {
    story.middle += formatted(" Last commit {}: “{}”.", git.lastCommitAgo, git.lastCommit);
  }
  story.middle += " " + startedBy(stack.start, stack.age, stack.work, surroundings);
  story.hint = shared ? " Stop it if you are not using it." : " Stop it if you are done with this branch.";
  return story;
}

const std::string& jobName(const ProjectStack& stack) {
  return stack.job->job ? *stack.job->job : stack.name;
}

bool isWorking(const ClaudeWork& job) { return job.jobState == "working"; }

// What the job was about, by the best description there is.
std::string jobTopic(const ProjectStack& stack, Surroundings& surroundings) {
  const ClaudeWork& job = *stack.job;
  std::optional<std::string> number;
  if (job.pr) number = std::to_string(*job.pr);
  if (const auto title = surroundings.prTitle(job.prRepo, number)) {
    return formatted(" The job worked on the pull request “{}”.", *title);
  }
  if (const auto& title = stack.work && stack.work->title ? stack.work->title : job.title) {
    return formatted(" The job worked on “{}”.", *title);
  }
  if (!stack.jobRepository) return {};
  const Git& git = *stack.jobRepository;
  return formatted(" The job worked in {}, on the branch {}.{}", git.repo, git.branch,
                   git.lastCommit.empty() ? "" : formatted(" Its last commit was “{}”.", git.lastCommit));
}

std::string jobEnding(const ClaudeWork& job, Timestamp now) {
  if (isWorking(job)) return " The job is still working.";
  const std::string when = job.jobUpdated ? " " + ago(secondsBetween(*job.jobUpdated, now)) + " ago" : "";
  if (job.jobState == "blocked" || job.jobState == "failed" || job.jobState == "error") {
    return formatted(" The job stopped{} because of an error, but its server still runs.", when);
  }
  return formatted(" The job ended{}, but its server still runs.", when);
}

Story storyOfJob(const ProjectStack& stack, Timestamp now, Surroundings& surroundings) {
  const std::size_t count = stack.servers.size();
  const std::string what = count == 1 ? "A test server" : formatted("{} test servers", count);
  return {formatted("{} from the Claude Code job “{}” {} still running", what, jobName(stack),
                    count == 1 ? "is" : "are"),
          jobTopic(stack, surroundings) + jobEnding(*stack.job, now),
          isWorking(*stack.job) ? "" : " It is safe to stop."};
}

Story storyOf(const ProjectStack& stack, Timestamp now, Surroundings& surroundings) {
  if (stack.job) return storyOfJob(stack, now, surroundings);
  if (stack.project) return storyOfBranch(stack, *stack.project, surroundings);
  return storyWithoutRepository(stack, surroundings);
}

void addJobLines(const ProjectStack& stack, std::vector<std::string>& lines) {
  lines.push_back(formatted("Claude Code background job “{}”, state: {}", jobName(stack),
                            stack.job->jobState.value_or("unknown")));
  if (const auto& git = stack.jobRepository) {
    lines.push_back(formatted("The job worked in the git repo {}, branch {}. Last commit: {}", git->repo,
                              git->branch, git->lastCommit));
  }
}

std::string evidenceOf(const ProjectStack& stack, Surroundings& surroundings) {
  std::vector<std::string> lines;
  for (const StackServer& server : stack.servers) {
    lines.push_back(formatted("Server: {}. Command: {}", server.kind,
                              firstCharacters(commandLine(*server.proc), shownCommandCharacters)));
  }
  const std::string& home = surroundings.self().home;
  const bool isBelowHome = stack.root.starts_with(home + "/");
  lines.push_back("Folder: " + (isBelowHome ? "~" + stack.root.substr(home.size()) : stack.root));
  for (const Container* container : stack.containers) {
    lines.push_back(formatted("Docker container: {} (image {})", container->name, container->image));
  }
  if (stack.job) addJobLines(stack, lines);
  for (const StackServer& server : stack.servers) {
    if (auto head = scriptHead(*server.proc, surroundings)) lines.push_back(std::move(*head));
  }
  return facts(stack.start.who, stack.project, stack.work, std::move(lines));
}

std::string subjectOf(const ProjectStack& stack) {
  if (stack.job) return "a test server";
  return stack.project ? stack.project->repo : stack.name;
}

std::string summaryOf(const ProjectStack& stack) {
  if (!stack.job) return formatted("{}, on for {}.", contents(stack, Ports::hidden), ago(stack.age));
  return formatted("From the Claude Code job “{}”, which {}.", jobName(stack),
                   isWorking(*stack.job) ? "is still working" : "has stopped");
}

}  // namespace

StackWords wordsFor(const ProjectStack& stack, const Snapshot& snapshot, Surroundings& surroundings) {
  Story story = storyOf(stack, snapshot.now, surroundings);
  return {.title = std::move(story.title),
          .detail = formatted("It runs {}.{} It uses {} in total.{}", contents(stack, Ports::shown),
                              story.middle, size(stack.bytes), story.hint),
          .evidence = evidenceOf(stack, surroundings),
          .subject = subjectOf(stack),
          .summary = summaryOf(stack)};
}

}  // namespace tarnwick
