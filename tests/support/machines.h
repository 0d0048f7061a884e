// Small invented machines for tests of rules.
#pragma once

#include <iterator>

#include "diagnosis/detect.h"
#include "tests/support/fake_surroundings.h"
#include "tests/support/testing.h"

namespace tarnwick {

inline constexpr std::uint64_t megabyte = 1ULL << 20U;
inline constexpr std::uint64_t gigabyte = 1ULL << 30U;
inline constexpr std::uint32_t myUid = 501;
inline constexpr Timestamp testNow = timestamp(1'790'000'000);

// Bytes with 16 GB installed, cores with 10 of them.
inline Snapshot machine() { return {.ram = 16 * gigabyte, .cores = 10, .now = testNow}; }

// Adds a process that is `age` seconds old and idle; callers change the rest before they add another. Call
// index() at the end.
inline Proc& add(Snapshot& snapshot, Pid pid, Pid ppid, std::vector<std::string> args, double age = 60) {
  Proc proc{.pid = pid, .ppid = ppid, .uid = myUid, .args = std::move(args), .cwd = "/tmp"};
  proc.started = snapshot.now - Seconds{age};
  if (!proc.args.empty()) proc.path = "/usr/bin/" + std::string(proc.name());
  return snapshot.procs[pid] = std::move(proc);
}

// Adds processes from a text, each as "PID PARENT WORD..."; commas part them.
inline void addAll(Snapshot& snapshot, const std::string& text) {
  std::istringstream all(text);
  for (std::string one; std::getline(all, one, ',');) {
    std::istringstream words(one);
    Pid pid = 0;
    Pid parent = 0;
    words >> pid >> parent;
    add(snapshot, pid, parent, {std::istream_iterator<std::string>(words), {}});
  }
}

// Adds a process of an application.
inline Proc& addApp(Snapshot& snapshot, Pid pid, const std::string& app) {
  Proc& proc = add(snapshot, pid, 1, {});
  proc.path = "/Applications/" + app + ".app/Contents/MacOS/" + app;
  proc.app = app;
  return proc;
}

// The one finding there should be.
inline Finding only(const std::vector<Finding>& found) {
  EXPECT_EQ(found.size(), 1U);
  return found.empty() ? Finding{} : found.front();
}

inline std::vector<std::string> ids(const std::vector<Finding>& found) {
  std::vector<std::string> all;
  for (const Finding& finding : found) all.push_back(finding.id);
  return all;
}

// What the cards show first, one a line: title, metric, bucket and impact.
inline std::string glance(const std::vector<Finding>& found) {
  std::ostringstream text;
  for (const Finding& f : found)
    text << f.title << " | " << f.metric.value_or("-") << " | " << label(f.bucket) << " " << f.impact << "\n";
  return text.str();
}

// What most rules are asked about.
struct RuleTest : testing::Test {
  FakeSurroundings around;
  Snapshot m = machine();
};

}  // namespace tarnwick
