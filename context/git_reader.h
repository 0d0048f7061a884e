// Facts about the repository that a process works in: git's own files are read directly, and git runs once
// for the last commit. Everything is cached, so that repeated checks cost nothing. What cannot be read is
// absent or empty. Used from the thread that runs the rules, one run at a time.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "records/basics.h"
#include "records/snapshot.h"
#include "sampling/tools/tool_places.h"
#include "sampling/tools/tool_runner.h"
#include "system/clock.h"
#include "system/files.h"

namespace tarnwick {

class GitReader {
 public:
  // An answer about a repository is good for so long, in seconds.
  static constexpr double answerSeconds = 300;

  // So long may one of git's answers take, and one of gh's, which come over the network; in seconds.
  static constexpr double gitSeconds = 2;
  static constexpr double ghSeconds = 4;

  // What is handed in must outlive the reader. `files`: those of the repositories. `prTitlesWanted`: does the
  // user let gh ask over the network at this moment?
  GitReader(ToolRunner& runner, ToolPlaces& places, Clock& clock, Files& files, std::string home,
            std::function<bool()> prTitlesWanted)
      : runner_(runner),
        places_(places),
        clock_(clock),
        files_(files),
        home_(std::move(home)),
        prTitlesWanted_(std::move(prTitlesWanted)) {}

  // So often in one check may git come too late before it is not asked any more: the time is for the rest.
  static constexpr int mostLate = 2;

  void beginCheck() { lateInCheck_ = 0; }

  // The repository whose top folder is `dir`, an absolute path, from `gitCache` where possible. Absent when
  // it is none, and always inside the home's Library. An answer for which somebody was waited for in vain is
  // not kept.
  std::optional<Git> git(const std::string& dir);

  // The same, read now.
  std::optional<Git> readGit(const std::string& dir);

  // The title of pull request `pr`, a number or a branch, of `repo` ("owner/name"); asked for once per run.
  // Absent when one of them cannot be what it should be.
  std::optional<std::string> prTitle(const std::optional<std::string>& repo,
                                     const std::optional<std::string>& pr);

 private:
  struct Answer {
    Timestamp at;
    std::optional<Git> git;
  };

  void remember(const std::string& dir, const std::optional<Git>& answer);
  bool isFresh(const Answer& answer, Timestamp now) const;
  void readLastCommit(const std::string& dir, const std::string& gitDirectory, Git& git);
  std::optional<std::string> outputOf(const std::string& tool, const std::vector<std::string>& args,
                                      const ToolOptions& options);

  ToolRunner& runner_;
  ToolPlaces& places_;
  Clock& clock_;
  Files& files_;
  const std::string home_;
  const std::function<bool()> prTitlesWanted_;
  std::map<std::string, Answer> gitCache;                     // by directory, absent answers included
  std::map<std::string, std::optional<std::string>> prCache;  // by "owner/name#number", for the whole run
  int lateInCheck_ = 0;                                       // so often git did not answer in time
  std::size_t lateTools_ = 0;                                 // so often a tool did not answer in time
};

}  // namespace tarnwick
