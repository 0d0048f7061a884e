// What a Claude Code process works on, from the files that it keeps in the user's home. They are only read,
// and longer names and titles cut.
// Missing files, bad JSON and missing keys give absent records or fields. Used from the thread that runs the
// rules, one run at a time.
#pragma once

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "records/basics.h"
#include "records/snapshot.h"

namespace tarnwick {

// The text as a JSON object; absent when it is not JSON, or another kind of value.
std::optional<nlohmann::json> jsonObject(std::string_view text);

// The last line of `bytes` that is marked with `type`, as an object. Only that line is tried: absent when it
// is cut or lacks `key`, even if an older line would serve.
std::optional<nlohmann::json> newest(std::string_view bytes, std::string_view type, std::string_view key);

class ClaudeReader {
 public:
  explicit ClaudeReader(std::string home) : home_(std::move(home)) {}

  // The work of an interactive Claude Code process.
  std::optional<ClaudeWork> claudeSession(Pid pid);

  // The work of the background job in whose folder `dir` lies.
  std::optional<ClaudeWork> claudeJob(const std::string& dir);

  // Title and pull request of a session; all fields absent when nothing is found.
  ClaudeWork transcript(const std::string& sessionId);

  // A file that holds one JSON object, of at most 1 MiB.
  static std::optional<nlohmann::json> json(const std::string& path);

 private:
  // Empty when the session has no transcript.
  std::string transcriptPath(const std::string& sessionId);

  const std::string home_;
  std::map<std::string, std::string> transcriptPaths;  // by session id; kept for the whole run once found
};

}  // namespace tarnwick
