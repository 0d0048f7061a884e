// Who uses the machine, whether or not a rule has something to say about it: the biggest groups of processes
// as people think of them, and what these do not explain. Pure but for the few questions of `Surroundings`,
// which are asked about the rows that are shown and about servers' folders; nothing fails. The result refers
// to nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "diagnosis/surroundings.h"
#include "records/finding.h"
#include "records/snapshot.h"

namespace tarnwick {

// What holds a group together.
enum class UserKind {
  application,
  browser,
  container,
  virtualMachine,  // the one in which containers run
  servers,         // of one project
  job,             // one root with everything below it
  sameCommand,     // several such roots with the same words
  otherUser,       // everything of another user
  kernel
};

// "application", "same_command": as scripts read it.
std::string_view word(UserKind kind);

// One group. Shown texts hold no line ends.
struct BiggestUser {
  UserKind kind = UserKind::job;
  std::string what;                    // its name, or the command
  std::uint64_t bytes = 0;             // memory, bytes
  double cpu = 0;                      // cores' worth
  std::int64_t count = 0;              // processes
  std::optional<Timestamp> since;      // its oldest process; absent when unknown
  std::optional<std::string> who;      // started it: "you", "Claude Code", an application; a user's name
  std::optional<std::string> project;  // repository, where there is one
  std::optional<std::string> branch;   // of it
  std::optional<Action> stop;          // absent where nothing is safe to stop it with

  bool operator==(const BiggestUser&) const = default;
};

// What a list is sorted by.
enum class Scarce { memory, processor };

struct BiggestUsers {
  Scarce scarce = Scarce::processor;  // what is short now, or nearer to its end
  std::vector<BiggestUser> rows;      // most of that first
  std::uint64_t bytesInUse = 0;       // of the machine, on disk too; without a figure what the groups hold
  double cpuInUse = 0;                // of the machine, cores' worth; without a figure what the groups use

  // What the rows do not explain: with the rows it gives the two figures above. Memory may be below 0, where
  // several processes count what they share.
  std::int64_t restBytes = 0;
  double restCpu = 0;
  std::int64_t restCount = 0;  // processes that were seen and are in no row

  bool operator==(const BiggestUsers&) const = default;
};

// The `most` biggest by memory together with the `most` biggest by processor. Groups that use nothing of
// either are no rows.
BiggestUsers biggestUsers(const Snapshot& snapshot, std::size_t most, Surroundings& surroundings);

// At most `most` of the rows that have some of it, most first: "Chrome 4.1 GB, Slack 900 MB" or "Chrome 30%
// CPU". Empty when none has.
std::string biggestOf(const BiggestUsers& users, Scarce kind, std::size_t most, const Snapshot& snapshot);

}  // namespace tarnwick
