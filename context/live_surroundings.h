// The real answers to what rules ask outside the snapshot, put together from the readers.
#pragma once

#include "context/claude_reader.h"
#include "context/git_reader.h"
#include "diagnosis/surroundings.h"
#include "sampling/tools/tool_places.h"

namespace tarnwick {

class LiveSurroundings : public Surroundings {
 public:
  // What is handed in must outlive this object; the readers keep their caches from check to check.
  LiveSurroundings(Self self, GitReader& gitReader, ClaudeReader& claudeReader, ToolPlaces& places)
      : self_(std::move(self)), gitReader_(gitReader), claudeReader_(claudeReader), places_(places) {}

  const Self& self() override { return self_; }
  std::optional<Git> git(const std::string& dir) override;
  std::optional<ClaudeWork> claudeSession(Pid pid) override;
  std::optional<ClaudeWork> claudeJob(const std::string& dir) override;
  std::optional<std::string> prTitle(const std::optional<std::string>& repo,
                                     const std::optional<std::string>& pr) override;
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
};

}  // namespace tarnwick
