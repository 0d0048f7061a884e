// Which processes people take for one: those of an application, or everything below the root of one job.
// Results point into the snapshot and live as long as it does.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>

#include "diagnosis/process_tree.h"
#include "records/snapshot.h"

namespace tarnwick {

struct ProcessGroup {
  double cpu = 0;                // cores' worth
  std::uint64_t bytes = 0;       // memory
  std::int64_t count = 0;        // processes
  const Proc* root = nullptr;    // of the job; of an application the first that was added; never null
  const Proc* oldest = nullptr;  // of equal ones the first that was added; never null
  const Proc* server = nullptr;  // the first that listens; null when none does
};

struct ProcessGroups {
  std::map<std::string_view, ProcessGroup> apps;  // by application name
  std::map<Pid, ProcessGroup> jobs;               // by the root's pid

  // Adds the process to its application's group, else to that of its root.
  void add(const Proc& proc, Starters& starters);

  // Adds the process to the group of that application.
  void addTo(std::string_view app, const Proc& proc);
};

}  // namespace tarnwick
