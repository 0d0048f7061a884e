// Values that the panel's tests show, and ways to look into a tree.
#pragma once

#include <string>
#include <vector>

#include "app/panel/content.h"

namespace tarnwick {

inline constexpr std::uint64_t mib = 1024ULL * 1024;
inline constexpr std::int64_t gib = 1024LL * 1024 * 1024;
inline constexpr Timestamp sampleTime = timestamp(1'700'000'000);

// Everything that the panel looks at, owned.
struct Shown {
  std::optional<Snapshot> snap;
  std::vector<Finding> found;
  bool busy = false;
  std::optional<Note> note;
  Guesses guesses;
  std::optional<std::string> openCard;

  PanelView view() const { return {snap, found, busy, note, guesses, openCard}; }
};

// A healthy machine: 140 GB free, no pressure, processor at 12 %.
Snapshot sampleSnapshot();

// A developer's machine: five causes and two leftovers, with steps, metrics, evidence and long texts.
std::vector<Finding> sampleFindings();

// A plain card with one action: "kill -TERM <pid>".
Finding sampleFinding(const std::string& id, Bucket bucket, Pid pid = 41);

// Every node of that kind, in reading order.
template <class T>
std::vector<T> nodesOf(const Node& node) {
  std::vector<T> all;
  if (const T* own = std::get_if<T>(&node.view)) all.push_back(*own);
  std::visit(
      [&](const auto& view) {
        const auto addFrom = [&](const std::vector<Node>& children) {
          for (const Node& child : children) {
            const std::vector<T> below = nodesOf<T>(child);
            all.insert(all.end(), below.begin(), below.end());
          }
        };
        if constexpr (requires { view.children; }) addFrom(view.children);
        if constexpr (requires { view.child; }) addFrom(view.child);
        if constexpr (requires { view.row; }) addFrom(view.row);
      },
      node.view);
  return all;
}

// The texts of all labels, in reading order.
std::vector<std::string> textsOf(const Node& node);

// The titles of all buttons that have one, in reading order.
std::vector<std::string> titlesOf(const Node& node);

}  // namespace tarnwick
