// Where the outside tools are: fixed places of each system, never the search path. The environment can turn
// every tool off.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "system/port.h"

namespace tarnwick {

// The first candidate that is an executable file; absent when none is, and always while tools are off.
std::optional<std::string> executable(const std::vector<std::string>& candidates);

// The places where one system keeps its tools, the preferred ones first.
struct ToolCandidates {
  std::string developerDir;  // the selected developer tools; empty on a system without such a choice
  std::vector<std::string> git;
  std::vector<std::string> simctl;
  std::vector<std::string> gh;
};

// The tools of this run: looked up together at the first question, never again. Any thread.
class ToolPlaces {
 public:
  explicit ToolPlaces(const std::string& home) : ToolPlaces(toolCandidates(home)) {}
  explicit ToolPlaces(ToolCandidates candidates) : candidates_(std::move(candidates)) {}

  const std::string& developerDir() const { return candidates_.developerDir; }

  // Absent when the machine has none, or tools are off.
  const std::optional<std::string>& gitBin();
  const std::optional<std::string>& simctlBin();
  const std::optional<std::string>& ghBin();

 private:
  void lookUp();

  const ToolCandidates candidates_;
  std::once_flag lookedUp_;
  std::optional<std::string> gitBin_;
  std::optional<std::string> simctlBin_;
  std::optional<std::string> ghBin_;
};

}  // namespace tarnwick
