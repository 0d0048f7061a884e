#include "context/git_reader.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include "context/git_files.h"
#include "records/text.h"

namespace tarnwick {
namespace {

// The files ".git", HEAD and commondir hold one line; a config larger than this is none.
constexpr std::size_t lineFileBytes = 64U << 10U;
constexpr std::size_t configBytes = 1U << 20U;

// How git is run in a folder that merely is some process's working directory. Its configuration belongs to
// whoever made the folder, and must start nothing there.
ToolOptions harmlessGit() {
  ToolOptions options;
  options.seconds = GitReader::gitSeconds;
  // GIT_DIR, GIT_CONFIG_PARAMETERS, GIT_TRACE and their like in our own environment would answer about
  // another repository, or write files.
  options.droppedVariables = {"GIT_"};
  options.addedVariables = {
      // A commit that is missing in a partial clone would be fetched, and a fetch runs what the remote's
      // entry names: an upload-pack command, a transport helper, a program for ssh. The first variable says
      // so to git 2.39.4 and newer. The second holds with every git: no transport is allowed at all.
      // (protocol.allow=never would not do: the repository's own protocol.file.allow is stronger.)
      {"GIT_NO_LAZY_FETCH", "1"},
      {"GIT_ALLOW_PROTOCOL", ""},
      // Values given here are stronger than the repository's. They need git 2.31.
      {"GIT_CONFIG_COUNT", "4"},
      // Checking a signature runs gpg.program, and would mix its words into the output.
      {"GIT_CONFIG_KEY_0", "log.showSignature"},
      {"GIT_CONFIG_VALUE_0", "false"},
      // The name map is a file of the work tree that git reads without need, even when it is a pipe.
      {"GIT_CONFIG_KEY_1", "log.mailmap"},
      {"GIT_CONFIG_VALUE_1", "false"},
      // Printing one subject takes neither the index nor a hook. Should that change, they stay off.
      {"GIT_CONFIG_KEY_2", "core.fsmonitor"},
      {"GIT_CONFIG_VALUE_2", "false"},
      {"GIT_CONFIG_KEY_3", "core.hooksPath"},
      {"GIT_CONFIG_VALUE_3", "/dev/null"},
      // A pager runs only before a terminal, a prompt and the index's lock are not reached by this command:
      // kept off all the same. Differences are not computed (diff.external, textconv), and aliases cannot
      // stand in for git's own commands.
      {"GIT_PAGER", "cat"},
      {"GIT_TERMINAL_PROMPT", "0"},
      {"GIT_OPTIONAL_LOCKS", "0"},
  };
  return options;
}

}  // namespace

bool GitReader::isFresh(const Answer& answer, Timestamp now) const {
  const double age = secondsBetween(answer.at, now);
  return age >= 0 && age < answerSeconds;
}

std::optional<Git> GitReader::git(const std::string& dir) {
  if (dir.starts_with(home_ + "/Library/")) return std::nullopt;
  const auto known = gitCache.find(dir);
  if (known != gitCache.end() && isFresh(known->second, clock_.now())) return known->second.git;
  const std::size_t before = files_.misses() + lateTools_;
  std::optional<Git> answer = readGit(dir);
  if (files_.misses() + lateTools_ == before) remember(dir, answer);
  return answer;
}

void GitReader::remember(const std::string& dir, const std::optional<Git>& answer) {
  const Timestamp now = clock_.now();
  // Folders come and go for as long as the program runs.
  std::erase_if(gitCache, [&](const auto& entry) { return !isFresh(entry.second, now); });
  gitCache[dir] = Answer{now, answer};
}

std::optional<Git> GitReader::readGit(const std::string& dir) {
  // An unreadable working directory is empty; to git that would be our own.
  if (!dir.starts_with('/')) return std::nullopt;
  const std::string marker = dir + "/.git";
  const bool isMainCheckout = files_.isDirectory(marker);
  std::optional<std::string> gitDirectory = marker;
  if (!isMainCheckout) {
    gitDirectory = gitDirectoryFrom(files_.readSmallFile(marker, lineFileBytes).value_or(""), dir);
    if (!gitDirectory) return std::nullopt;
  }

  Git git;
  git.isCopy = !isMainCheckout;
  git.branch = branchFrom(files_.readSmallFile(*gitDirectory + "/HEAD", lineFileBytes).value_or(""));
  const std::string common = commonDirectoryFrom(
      files_.readSmallFile(*gitDirectory + "/commondir", lineFileBytes).value_or(""), *gitDirectory);
  const auto url = originUrl(files_.readSmallFile(common + "/config", configBytes).value_or(""));
  RemoteParts remote = remoteParts(url.value_or(""));
  git.repo = remote.repo.empty() ? folderName(dir) : std::move(remote.repo);
  git.slug = std::move(remote.slug);
  readLastCommit(dir, git);
  return git;
}

void GitReader::readLastCommit(const std::string& dir, Git& git) {
  const std::optional<std::string>& gitBin = places_.gitBin();
  if (!gitBin || !files_.mayVisit(dir)) return;
  if (lateInCheck_ >= mostLate) {
    ++lateTools_;
    return;
  }
  const auto output = outputOf(*gitBin, {"-C", dir, "log", "-1", "--format=%cr%n%s"}, harmlessGit());
  if (!output) {
    ++lateInCheck_;
    return files_.hasStalled(dir);
  }
  const std::string_view lines = trimmed(*output);
  const std::size_t end = lines.find('\n');
  git.lastCommitAgo = std::string(lines.substr(0, end));
  if (end == std::string_view::npos) return;
  const std::string_view rest = lines.substr(end + 1);
  git.lastCommit = std::string(rest.substr(0, rest.find('\n')));
}

// Absent when it did not end in time.
std::optional<std::string> GitReader::outputOf(const std::string& tool, const std::vector<std::string>& args,
                                               const ToolOptions& options) {
  const std::unique_ptr<RunningTool> running = runner_.start(tool, args, options);
  if (running == nullptr) return std::string();
  ToolResult result = running->result();
  if (!result.late) return std::move(result.output);
  ++lateTools_;
  return std::nullopt;
}

std::optional<std::string> GitReader::prTitle(const std::optional<std::string>& repo,
                                              const std::optional<std::string>& pr) {
  if (!repo || !pr || !prTitlesWanted_() || !places_.ghBin()) return std::nullopt;
  // `pr` may be a branch's name, which a file in somebody's folder says: gh must not take it for an option.
  if (pr->starts_with('-') || repo->starts_with('-')) return std::nullopt;
  const std::string key = *repo + "#" + *pr;
  const auto known = prCache.find(key);
  if (known != prCache.end()) return known->second;
  ToolOptions options;
  options.seconds = ghSeconds;
  const auto output = outputOf(
      *places_.ghBin(), {"pr", "view", *pr, "--repo", *repo, "--json", "title", "--jq", ".title"}, options);
  if (!output) return std::nullopt;
  std::optional<std::string> title;
  if (!trimmed(*output).empty()) title = std::string(trimmed(*output));
  prCache[key] = title;
  return title;
}

}  // namespace tarnwick
