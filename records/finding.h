// What a rule found (one card, one block of the report) and the remedies it offers. Plain values,
// compared by value. Shown texts may hold control characters; those of a list made by findings() hold no
// line ends.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "records/basics.h"

namespace tarnwick {

// The three groups of findings, in display order.
enum class Bucket {
  now,       // works hard at this moment
  always,    // a standing condition
  leftovers  // left running, used by nobody
};

inline constexpr std::array<Bucket, 3> allBuckets{Bucket::now, Bucket::always, Bucket::leftovers};

// The label of a bucket: "BUSY NOW", "ALWAYS ON" or "FORGOTTEN".
std::string_view label(Bucket bucket);

struct Fix;

// Sends a signal to the one process that had this pid and start time when the finding was made.
struct Signal {
  Pid pid = 0;
  std::int32_t number = 0;  // 15 asks it to end, 9 forces it
  Timestamp started;
  bool operator==(const Signal&) const = default;
};

// Asks every running application with that bundle identifier to quit.
struct QuitApp {
  std::string bundleID;
  bool operator==(const QuitApp&) const = default;
};

struct DockerStop {
  std::string container;  // engine id
  bool operator==(const DockerStop&) const = default;
};

struct SimShutdown {
  std::string udid;  // simulator device
  bool operator==(const SimShutdown&) const = default;
};

struct OpenSettings {
  std::string pane;  // System Settings pane identifier
  bool operator==(const OpenSettings&) const = default;
};

// Asks macOS for the permission to automate that browser.
struct AskAutomation {
  std::string bundleID;
  bool operator==(const AskAutomation&) const = default;
};

// Closes the tabs that repeat an earlier tab of that browser.
struct CloseDuplicateTabs {
  std::string bundleID;
  bool operator==(const CloseDuplicateTabs&) const = default;
};

struct OpenTab {
  std::string bundleID;
  std::string address;
  bool operator==(const OpenTab&) const = default;
};

// Does each in turn.
struct All {
  std::vector<Fix> fixes;
  bool operator==(const All&) const;
};

// One executable remedy. The order of the alternatives is the case number that hashing feeds first.
struct Fix {
  std::variant<Signal, QuitApp, DockerStop, SimShutdown, OpenSettings, AskAutomation, CloseDuplicateTabs,
               OpenTab, All>
      kind;

  // The text shown under the button, one line; also the identity of the action that carries this fix.
  std::string command() const;

  // The processes that this fix signals, in order, duplicates kept.
  std::vector<Pid> pids() const;

  bool operator==(const Fix&) const = default;
};

struct Action {
  std::string label;  // the button's text
  Fix fix;

  // Two actions with the same fix command are the same action, whatever their labels.
  std::string id() const { return fix.command(); }
  bool operator==(const Action&) const = default;
};

struct Step {
  std::string text;
  std::optional<Action> action;
  bool operator==(const Step&) const = default;
};

struct Finding {
  std::string id;  // stable: kind, ":" and what it is about
  Bucket bucket = Bucket::now;
  std::string title;                    // one line
  std::string detail;                   // the explanation, one or more sentences
  std::uint64_t bytes = 0;              // memory this cause holds; 0 when it is not about memory
  std::vector<Action> actions;          // the first one is the main one
  std::optional<std::string> evidence;  // technical proof, lines joined by line feeds
  std::vector<Step> steps;
  std::string subject;                // noun phrase after "The biggest cause: "
  std::string summary;                // one sentence
  std::optional<std::string> metric;  // short figure for the card's corner
  std::string icon;                   // system symbol name, or a file path (begins with "/")
  double impact = 0;                  // share of the machine; larger is worse

  bool operator==(const Finding&) const = default;
};

}  // namespace tarnwick

// Hashes agree with equality: the case number first, then the payload in field order.
template <>
struct std::hash<tarnwick::Bucket> {
  std::size_t operator()(tarnwick::Bucket bucket) const noexcept;
};
template <>
struct std::hash<tarnwick::Fix> {
  std::size_t operator()(const tarnwick::Fix& fix) const noexcept;
};
