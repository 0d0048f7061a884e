// The real answers to what rules ask outside the snapshot, put together from the readers.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>

#include "context/claude_reader.h"
#include "context/git_reader.h"
#include "diagnosis/surroundings.h"
#include "sampling/tools/tool_places.h"
#include "system/files.h"

namespace tarnwick {

class LiveSurroundings : public Surroundings {
 public:
  // What is handed in must outlive this object; the readers keep their caches from check to check.
  LiveSurroundings(Self self, GitReader& gitReader, ClaudeReader& claudeReader, ToolPlaces& places,
                   Files& files)
      : self_(std::move(self)),
        gitReader_(gitReader),
        claudeReader_(claudeReader),
        places_(places),
        files_(files) {}

  // A check begins: what was there, or was not, is asked again.
  void beginCheck();

  const Self& self() override { return self_; }
  std::optional<Git> git(const std::string& dir) override;
  std::optional<ClaudeWork> claudeSession(Pid pid) override;
  std::optional<ClaudeWork> claudeJob(const std::string& dir) override;
  std::optional<std::string> prTitle(const std::optional<std::string>& repo,
                                     const std::optional<std::string>& pr) override;
  bool hasTime() override { return files_.hasTime(); }
  bool exists(const std::string& path) override;
  std::optional<std::string> fileHead(const std::string& path) override;
  std::optional<std::string> deviceName(const std::string& plistPath) override;
  bool hasSimctl() override;
  std::string mediumDate(Timestamp moment) override;

 private:
  const Self self_;
  GitReader& gitReader_;
  ClaudeReader& claudeReader_;
  ToolPlaces& places_;
  Files& files_;
  std::unordered_map<std::string, bool> exists_;  // by path, for one check: servers share their ancestors
  std::size_t existsBytes_ = 0;                   // of those paths
};

}  // namespace tarnwick
