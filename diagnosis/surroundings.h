// The few questions that rules may ask outside the snapshot. Answered by the live machine in production
// and by prepared answers in tests; an answer that cannot be had is the neutral value named here. Answers
// are copies that the caller owns; all texts are valid UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "records/basics.h"
#include "records/snapshot.h"

namespace tarnwick {

// So much of a script is shown as evidence, in bytes.
inline constexpr std::size_t fileHeadBytes = 1500;

// Used from the thread that runs the rules, one run at a time.
class Surroundings {
 public:
  virtual ~Surroundings() = default;

  // Who runs this program, and where their home is.
  virtual const Self& self() = 0;

  // The repository whose top folder is `dir`; absent when `dir` is none or lies in the home's Library.
  virtual std::optional<Git> git(const std::string& dir) = 0;

  // What the interactive Claude Code process `pid` works on; absent when it is not known.
  virtual std::optional<ClaudeWork> claudeSession(Pid pid) = 0;

  // What the background job in whose folder `dir` lies works on; absent outside job folders.
  virtual std::optional<ClaudeWork> claudeJob(const std::string& dir) = 0;

  // The title of pull request `pr` (its number as text) of `repo` ("owner/name"). Absent unless the user
  // asked for titles, and whenever one of both is absent or the title cannot be had.
  virtual std::optional<std::string> prTitle(const std::optional<std::string>& repo,
                                             const std::optional<std::string>& pr) = 0;

  // Is there time for more questions in this check? Where there is none, all the others are in vain.
  virtual bool hasTime() { return true; }

  // Is there a file or folder at `path`?
  virtual bool exists(const std::string& path) = 0;

  // The first `fileHeadBytes` bytes of a regular file as text: each invalid sequence, a character cut at
  // the end included, is one U+FFFD. Absent when the file cannot be read.
  virtual std::optional<std::string> fileHead(const std::string& path) = 0;

  // The "name" text of a simulator's property list; absent when unreadable or malformed.
  virtual std::optional<std::string> deviceName(const std::string& plistPath) = 0;

  // Can simulators be shut down from here?
  virtual bool hasSimctl() = 0;

  // The moment in the user's language and time zone, with a medium date and a short time.
  virtual std::string mediumDate(Timestamp moment) = 0;
};

// Has no answer but who asks: for machines without a world around them, to which others may add what they
// know.
class NeutralSurroundings : public Surroundings {
 public:
  explicit NeutralSurroundings(Self self) : self_(std::move(self)) {}

  const Self& self() override { return self_; }
  std::optional<Git> git(const std::string& /*dir*/) override { return std::nullopt; }
  std::optional<ClaudeWork> claudeSession(Pid /*pid*/) override { return std::nullopt; }
  std::optional<ClaudeWork> claudeJob(const std::string& /*dir*/) override { return std::nullopt; }
  std::optional<std::string> prTitle(const std::optional<std::string>& /*repo*/,
                                     const std::optional<std::string>& /*pr*/) override {
    return std::nullopt;
  }
  bool exists(const std::string& /*path*/) override { return false; }
  std::optional<std::string> fileHead(const std::string& /*path*/) override { return std::nullopt; }
  std::optional<std::string> deviceName(const std::string& /*plistPath*/) override { return std::nullopt; }
  bool hasSimctl() override { return false; }
  std::string mediumDate(Timestamp /*moment*/) override { return {}; }

 private:
  const Self self_;
};

}  // namespace tarnwick
