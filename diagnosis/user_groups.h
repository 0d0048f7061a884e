// Everybody who uses the machine, in groups as people think of them, not yet in words. Results point into the
// snapshot and live as long as it does.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "diagnosis/biggest_users.h"
#include "diagnosis/process_tree.h"

namespace tarnwick {

struct UserGroup {
  UserKind kind = UserKind::job;
  std::uint64_t bytes = 0;
  double cpu = 0;                           // cores' worth, finite
  std::int64_t count = 0;                   // processes
  std::optional<Timestamp> since = {};      // the oldest process
  std::string_view name = {};               // of the application; of the process that uses most of the
                                            // kernel's or another user's
  double nameShare = 0;                     // how much that one uses, as a share of the machine
  std::vector<const Proc*> roots = {};      // of jobs; the virtual machine
  std::vector<const Proc*> servers = {};    // what listens in them
  std::string folder = {};                  // servers: of the project
  std::optional<std::string> who = {};      // started the jobs
  const ContainerUse* container = nullptr;  // of a container
  std::optional<std::uint32_t> user = {};   // another user
};

// A shell that somebody types into: ending it ends their terminal.
bool isPrompt(const Proc& proc, const Snapshot& snapshot);

// Each process that was seen is in one of them, but for this program.
std::vector<UserGroup> userGroups(const Snapshot& snapshot, Starters& starters, Surroundings& surroundings);

}  // namespace tarnwick
