// Values that the panel's tests show, and ways to look into a tree.
#pragma once

#include <variant>

#include "app/panel/content.h"
#include "app/panel/panel_controller.h"
#include "tests/support/fake_settings.h"
#include "tests/support/testing.h"

namespace tarnwick::panel {

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
  BiggestUsers users = {};

  PanelView view() const { return {snap, found, busy, note, guesses, openCard, &users}; }
};

// A healthy machine.
inline Snapshot sampleSnapshot() {
  const std::int64_t free = 140 * gib;
  const std::int64_t total = 256 * gib;
  return {.diskFree = free,
          .diskTotal = total,
          .ram = 16384 * mib,
          .cpuBusy = 0.12,
          .cores = 10,
          .now = sampleTime};
}

// A plain card with one action: "kill -TERM 41".
inline Finding sampleFinding(const std::string& id, Bucket bucket, const std::string& title = "") {
  return {.id = id,
          .bucket = bucket,
          .title = title.empty() ? "Title of " + id : title,
          .detail = "Detail of " + id + ".",
          .bytes = 512 * mib,
          .actions = {{"Stop", {Signal{41, 15, sampleTime}}}},
          .subject = id,
          .summary = "Summary of " + id + ".",
          .icon = "cpu",
          .impact = 0.1};
}

// A developer's machine: five causes and two leftovers, with steps, metrics, evidence and long texts.
inline std::vector<Finding> sampleFindings() {
  Finding docker = sampleFinding("docker", Bucket::always, "Docker holds 8.0 GB of memory");
  docker.detail =
      "Docker runs your containers inside a virtual machine, and that machine keeps the memory it once asked for. 2 containers are running: storefront-db (780 MB) and storefront-redis (120 MB).";
  docker.actions = {{"Quit Docker", {QuitApp{"com.docker.docker"}}}};
  docker.steps = {
      {"Quit Docker when you do not need it.", docker.actions.front()},
      {"Or give it less memory: open Docker, choose Settings, then Resources.", std::nullopt},
      {"Stop the containers that you do not use.", Action{"Stop storefront-db", {DockerStop{"c1"}}}}};
  docker.metric = "8.0 GB";
  Finding browser = sampleFinding("browser-app:Google Chrome", Bucket::now,
                                  "Google Chrome uses 2.3 GB of memory for 31 tabs in 4 windows");
  browser.summary = "12 tabs repeat a page that is already open in another tab of the same browser.";
  browser.metric = "140% CPU";
  browser.icon = "/nowhere/Google Chrome.app";
  Finding tests = sampleFinding("pid:15", Bucket::now, "“make test-cov” keeps 3 cores busy");
  tests.actions = {{"Stop", {All{{{Signal{15, 15, sampleTime}}, {Signal{14, 15, sampleTime}}}}}}};
  tests.evidence = "python -m pytest\ncwd /home/me/storefront";
  Finding photos = sampleFinding("photos", Bucket::now, "Photos is analyzing your pictures");
  photos.actions.clear();
  const Finding stack =
      sampleFinding("stack:/home/me/storefront", Bucket::leftovers,
                    "storefront: 2 servers and 2 containers that nobody has used for 13 hours");
  Finding awake = sampleFinding("caffeinate:30", Bucket::leftovers);
  awake.bytes = 0;
  return {docker, browser, tests, sampleFinding("disk", Bucket::always), photos, stack, awake};
}

// Every node of that kind, in reading order.
template <class T>
std::vector<T> nodesOf(const Node& node) {
  std::vector<T> all;
  if (const T* own = std::get_if<T>(&node.view)) all.push_back(*own);
  const auto addFrom = [&](const std::vector<Node>& children) {
    for (const Node& child : children) std::ranges::copy(nodesOf<T>(child), std::back_inserter(all));
  };
  const auto addBelow = [&](const auto& view) {
    if constexpr (requires { view.children; }) addFrom(view.children);
    if constexpr (requires { view.child; }) addFrom(view.child);
    if constexpr (requires { view.row; }) addFrom(view.row);
  };
  std::visit(addBelow, node.view);
  return all;
}

// The texts of all labels, in reading order.
inline std::vector<std::string> textsOf(const Node& node) {
  std::vector<std::string> texts;
  for (const Label& label : nodesOf<Label>(node)) texts.push_back(label.text);
  return texts;
}

}  // namespace tarnwick::panel

using namespace tarnwick::panel;  // what these tests are about
