// Where the outside tools are: fixed places of each system, never the search path. The environment can turn
// every tool off.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "system/files.h"
#include "system/port.h"

namespace tarnwick {

// The first candidate that is an executable file; absent when none is, and always while tools are off.
std::optional<std::string> executable(const std::vector<std::string>& candidates, Files& files);

// The places where one system keeps its tools, the preferred ones first.
struct ToolCandidates {
  std::string developerDir;  // the selected developer tools; empty on a system without such a choice
  std::vector<std::string> git;
  std::vector<std::string> simctl;
  std::vector<std::string> gh;
};

// The tools of this run: looked up together at the first question, and again only when a folder did not
// answer then. Used by one thread at a time.
class ToolPlaces {
 public:
  explicit ToolPlaces(const std::string& home) : ToolPlaces(toolCandidates(home)) {}

  // `files` asks where they are and must outlive it; null: the system is asked here and now.
  explicit ToolPlaces(ToolCandidates candidates, Files* files = nullptr)
      : candidates_(std::move(candidates)), files_(files == nullptr ? direct_ : *files) {}
  ToolPlaces(const ToolPlaces&) = delete;
  ToolPlaces& operator=(const ToolPlaces&) = delete;

  const std::string& developerDir() const { return candidates_.developerDir; }

  // Absent when the machine has none, or tools are off.
  const std::optional<std::string>& gitBin();
  const std::optional<std::string>& simctlBin();
  const std::optional<std::string>& ghBin();

 private:
  void lookUp();

  const ToolCandidates candidates_;
  DirectFiles direct_;
  Files& files_;
  bool lookedUp_ = false;
  std::optional<std::string> gitBin_;
  std::optional<std::string> simctlBin_;
  std::optional<std::string> ghBin_;
};

}  // namespace tarnwick
