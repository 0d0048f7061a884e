// What a Claude Code process works on, from the files that it keeps in the user's home. They are only read,
// and longer names and titles cut.
// Missing files, bad JSON and missing keys give absent records or fields. Used from the thread that runs the
// rules, one run at a time.
#pragma once

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "records/basics.h"
#include "records/snapshot.h"
#include "system/files.h"

namespace tarnwick {

// The text as a JSON object; absent when it is not JSON, or another kind of value.
std::optional<nlohmann::json> jsonObject(std::string_view text);

// The last line of `bytes` that is marked with `type`, as an object. Only that line is tried: absent when it
// is cut or lacks `key`, even if an older line would serve.
std::optional<nlohmann::json> newest(std::string_view bytes, std::string_view type, std::string_view key);

class ClaudeReader {
 public:
  // `files` must outlive the reader.
  ClaudeReader(std::string home, Files& files) : home_(std::move(home)), files_(files) {}

  // A check begins: what was missing until now may have come.
  void beginCheck();

  // The work of an interactive Claude Code process.
  std::optional<ClaudeWork> claudeSession(Pid pid);

  // The work of the background job in whose folder `dir` lies.
  std::optional<ClaudeWork> claudeJob(const std::string& dir);

  // Title and pull request of a session; all fields absent when nothing is found.
  ClaudeWork transcript(const std::string& sessionId);

  // A file that holds one JSON object, of at most 1 MiB.
  std::optional<nlohmann::json> json(const std::string& path);

 private:
  // Empty when the session has no transcript.
  std::string transcriptPath(const std::string& sessionId);
  std::string findTranscript(const std::string& sessionId);

  const std::string home_;
  Files& files_;
  std::optional<std::vector<std::string>> projects_;   // in the folder of transcripts; absent until asked
  std::set<std::string> missing_;                      // sessions without a transcript, in this check
  std::map<std::string, std::string> transcriptPaths;  // by session id; kept for the whole run once found
};

}  // namespace tarnwick
