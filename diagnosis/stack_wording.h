// What is known about one forgotten development stack, and how its card says so.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "diagnosis/process_tree.h"
#include "diagnosis/surroundings.h"
#include "records/snapshot.h"

namespace tarnwick {

// A listening process of a stack and what it serves.
struct StackServer {
  const Proc* proc = nullptr;
  std::string kind;  // such as "Node server"
};

// The servers and containers of one project. Points into the snapshot.
struct ProjectStack {
  std::string root;                       // project folder
  std::string name;                       // its last path component
  std::vector<StackServer> servers = {};  // by first listening port; never empty
  std::vector<const Container*> containers = {};
  std::uint64_t bytes = 0;                // memory of the servers' trees and of the containers
  double age = 0;                         // of the oldest server, seconds
  Starter start = {};                     // of the oldest server
  std::optional<ClaudeWork> work = {};    // the Claude Code session that started it
  std::optional<ClaudeWork> job = {};     // the Claude Code background job whose folder this is
  std::optional<Git> project = {};        // the project's repository; absent when there is a job
  std::optional<Git> jobRepository = {};  // where the job worked
};

// The texts of its card. `title`, `detail` and `summary` are one line each.
struct StackWords {
  std::string title;
  std::string detail;
  std::string evidence;
  std::string subject;
  std::string summary;
};

StackWords wordsFor(const ProjectStack& stack, const Snapshot& snapshot, Surroundings& surroundings);

}  // namespace tarnwick
