#include "context/git_reader.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "context/git_files.h"
#include "records/limits.h"
#include "records/text.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

// The files ".git", HEAD and commondir hold one line; a config larger than this is none.
constexpr std::size_t lineFileBytes = 64U << 10U;
constexpr std::size_t configBytes = 1U << 20U;

// An age and a subject, or a title, need less; a tool that prints more is ended and has said nothing.
constexpr std::size_t answerBytes = 64U << 10U;

// What git is asked in a folder that merely is some process's working directory. Its configuration belongs
// to whoever made the folder, and must start nothing there.
std::vector<std::string> lastCommitWords(const std::string& dir, const std::string& gitDirectory) {
  return {
      "-C",
      dir,
      // Named, so that git does not search on in the folders above when this is no repository after all, nor
      // goes where the configuration says that the files are.
      "--git-dir=" + gitDirectory,
      "--work-tree=" + dir,
      // Values given here are stronger than the repository's, with every git.
      // Checking a signature runs gpg.program, and would mix its words into the output.
      "-c",
      "log.showSignature=false",
      // The name map is a file of the work tree that git reads without need, even when it is a pipe.
      "-c",
      "log.mailmap=false",
      // Otherwise a repository that keeps its subjects in another encoding gets them printed in it.
      "-c",
      "i18n.logOutputEncoding=UTF-8",
      // Printing one subject takes neither the index nor a hook. Should that change, they stay off.
      "-c",
      "core.fsmonitor=",
      "-c",
      "core.hooksPath=/dev/null",
      "log",
      "-1",
      "--format=%cr%n%s",
  };
}

ToolOptions harmlessGit(const std::string& dir) {
  ToolOptions options;
  options.seconds = GitReader::gitSeconds;
  // GIT_DIR, GIT_CONFIG_PARAMETERS, GIT_TRACE and their like in our own environment would answer about
  // another repository, or write files; the others would translate the commit's age.
  options.droppedVariables = {"GIT_", "LC_", "LANG"};
  options.addedVariables = {
      {"LC_ALL", "C.UTF-8"},
      // Nothing above the folder counts, even if git came to search.
      {"GIT_CEILING_DIRECTORIES", dir.substr(0, dir.rfind('/', dir.find_last_not_of('/')))},
      // A commit that is missing in a partial clone would be fetched, and a fetch runs what the remote's
      // entry names: an upload-pack command, a transport helper, a program for ssh. The first variable says
      // so to git 2.39.4 and newer. The second holds with every git: no transport is allowed at all.
      // (protocol.allow=never would not do: the repository's own protocol.file.allow is stronger.)
      {"GIT_NO_LAZY_FETCH", "1"},
      {"GIT_ALLOW_PROTOCOL", ""},
      // A pager runs only before a terminal, a prompt and the index's lock are not reached by this command:
      // kept off all the same. Differences are not computed (diff.external, textconv), and aliases cannot
      // stand in for git's own commands.
      {"GIT_PAGER", "cat"},
      {"GIT_TERMINAL_PROMPT", "0"},
      {"GIT_OPTIONAL_LOCKS", "0"},
  };
  // A configuration may include /dev/stdin, and what the user types or pipes is not for git.
  options.emptyInput = true;
  options.outputBytes = answerBytes;
  return options;
}

// gh asks the one host whose names were checked: a host or token of another one in our own environment would
// send the question, and the token, elsewhere.
ToolOptions codeHostOnly() {
  ToolOptions options;
  options.droppedVariables = {"GH_HOST", "GH_REPO", "GH_ENTERPRISE_TOKEN", "GITHUB_ENTERPRISE_TOKEN"};
  options.emptyInput = true;
  options.outputBytes = answerBytes;
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
  const auto head = files_.readSmallFile(*gitDirectory + "/HEAD", lineFileBytes);
  git.branch = branchFrom(head.value_or(""));
  const std::string commonFile = *gitDirectory + "/commondir";
  const auto commonLine = files_.readSmallFile(commonFile, lineFileBytes);
  const std::string common = commonDirectoryFrom(commonLine.value_or(""), *gitDirectory);
  const auto url = originUrl(files_.readSmallFile(common + "/config", configBytes).value_or(""));
  RemoteParts remote = remoteParts(url.value_or(""));
  git.repo = firstCharacters(remote.repo.empty() ? folderName(dir) : remote.repo, longestName);
  git.slug = std::move(remote.slug);
  // Git reads these two whole, however large they are, and waits where they are pipes.
  if (head && (commonLine || !files_.pathExists(commonFile))) readLastCommit(dir, *gitDirectory, git);
  return git;
}

void GitReader::readLastCommit(const std::string& dir, const std::string& gitDirectory, Git& git) {
  const std::optional<std::string>& gitBin = places_.gitBin();
  // Git itself, told the directory, does not ask whose it is.
  if (!gitBin || !files_.isOwn(dir) || !files_.isOwn(gitDirectory) || !files_.mayVisit(dir)) return;
  if (lateInCheck_ >= mostLate) {
    ++lateTools_;
    return;
  }
  const auto output = outputOf(*gitBin, lastCommitWords(dir, gitDirectory), harmlessGit(dir));
  if (!output) {
    ++lateInCheck_;
    return files_.hasStalled(dir);
  }
  const std::string_view lines = trimmed(*output);
  const std::size_t end = lines.find('\n');
  git.lastCommitAgo = firstCharacters(lines.substr(0, end), longestName);
  if (end == std::string_view::npos) return;
  const std::string_view rest = lines.substr(end + 1);
  git.lastCommit = firstCharacters(rest.substr(0, rest.find('\n')), longestName);
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
  // Files in somebody's folder say both: gh must not take one for an option, an address or another host.
  if (!isSlug(*repo) || !(isPullRequestNumber(*pr) || isBranchName(*pr))) return std::nullopt;
  const std::string key = *repo + "#" + *pr;
  const auto known = prCache.find(key);
  if (known != prCache.end()) return known->second;
  // To start what lies in a folder that does not answer takes for ever, and that of gh may be the user's own.
  const std::size_t before = files_.misses();
  files_.isExecutableFile(*places_.ghBin());
  if (files_.misses() != before) return std::nullopt;
  ToolOptions options = codeHostOnly();
  options.seconds = ghSeconds;
  const auto output =
      outputOf(*places_.ghBin(),
               {"pr", "view", "--repo", *repo, "--json", "title", "--jq", ".title", "--", *pr}, options);
  if (!output) return std::nullopt;
  std::optional<std::string> title;
  if (!trimmed(*output).empty()) title = firstCharacters(trimmed(*output), longestName);
  prCache[key] = title;
  return title;
}

}  // namespace tarnwick
