#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app/cli/json_report.h"
#include "app/cli/terminal_width.h"
#include "app/cli/top_table.h"
#include "app/panel/content.h"
#include "diagnosis/findings.h"
#include "diagnosis/report.h"
#include "diagnosis/verdict.h"
#include "fuzz/targets.h"
#include "records/text.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

// Names and words that rules look for, so that invented machines have something to find.
constexpr std::array<std::string_view, 40> knownTexts{
    "",
    "node",
    "/usr/bin/node",
    "python3",
    "-zsh",
    "bash",
    "-c",
    "claude",
    "vite",
    "next",
    "caffeinate",
    "-i",
    "--port",
    "3000",
    "/Users/dana",
    "/Users/dana/shop",
    "/Users/dana/shop/web",
    "/usr/bin/env",
    "Google Chrome",
    "com.google.Chrome",
    "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome",
    "com.docker.docker",
    "/Applications/Docker.app/Contents/MacOS/com.docker.virtualization",
    "Docker",
    "launchd_sim",
    "simctl",
    "/Users/dana/Library/Developer/CoreSimulator/Devices/0A/data/var/run/launchd_bootstrap.plist",
    "mds_stores",
    "WindowServer",
    "kernel_task",
    "com.apple.Safari",
    "Safari",
    "postgres",
    "Up 3 hours",
    "0123456789ab",
    "\n",
    "\u202e",
    "http://localhost:3000/",
    "main",
    "✳"};

// Takes the bytes apart from the front; where they end, everything is zero.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  std::uint64_t number(std::uint64_t most) {
    std::uint64_t value = 0;
    for (std::uint64_t rest = most; rest > 0; rest >>= 8U) value = (value << 8U) | next();
    return most == ~0ULL ? value : value % (most + 1);
  }
  bool maybe() { return next() % 2 == 1; }

  std::string text() {
    const std::size_t which = next();
    if (which < 200) return std::string(knownTexts[which % knownTexts.size()]);
    const std::size_t length = std::min<std::size_t>(which == 255 ? 40'000 : which - 200, bytes_.size());
    const std::string_view taken = bytes_.substr(0, length);
    bytes_.remove_prefix(length);
    return repairUtf8(taken);
  }
  std::vector<std::string> texts(std::size_t most) {
    std::vector<std::string> all(number(most));
    for (std::string& one : all) one = text();
    return all;
  }
  std::optional<std::string> perhapsText() { return maybe() ? std::optional(text()) : std::nullopt; }

  // Small, usual, or beyond anything.
  std::uint64_t figure() {
    constexpr unsigned kinds = 4;
    switch (next() % kinds) {
      case 0:
        return number(2);
      case 1:
        return number(0xFFFF) << 20U;
      case 2:
        return number(0xFFFF'FFFF);
      default:
        return number(~0ULL);
    }
  }
  double cores() { return static_cast<double>(number(0xFFFF)) / 256; }

 private:
  unsigned char next() {
    if (bytes_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte;
  }

  std::string_view bytes_;
};

constexpr Timestamp now = timestamp(1'790'000'000);

Proc process(Bytes& bytes, Pid pid) {
  Proc proc{.pid = pid,
            .ppid = static_cast<Pid>(bytes.number(40)),
            .uid = bytes.maybe() ? 501U : 0U,
            .session = static_cast<Pid>(bytes.number(40)),
            .path = bytes.text(),
            .args = bytes.texts(6),
            .started = now - Seconds{static_cast<double>(bytes.number(0x3F'FFFF))},
            .footprint = bytes.figure(),
            .resident = bytes.figure(),
            .cpu = bytes.cores(),
            .cwd = bytes.text(),
            .app = bytes.perhapsText()};
  proc.terminalShell = bytes.maybe();
  proc.inContainer = bytes.maybe();
  for (std::uint64_t ports = bytes.number(3); ports > 0; --ports)
    proc.ports.push_back(static_cast<std::uint16_t>(bytes.number(0xFFFF)));
  return proc;
}

Snapshot machine(Bytes& bytes) {
  Snapshot made;
  made.now = now;
  made.ram = bytes.figure();
  made.swapUsed = bytes.figure();
  made.cpuBusy = bytes.cores() / 256;
  made.cores = static_cast<int>(bytes.number(0xFF)) - 1;
  made.uptime = static_cast<double>(bytes.figure());
  made.diskFree = static_cast<std::int64_t>(bytes.figure());
  made.diskTotal = static_cast<std::int64_t>(bytes.figure());
  made.pressure = static_cast<std::int32_t>(bytes.number(6));
  made.thermal = static_cast<ThermalState>(bytes.number(3));
  if (bytes.maybe()) made.memorySaver = static_cast<int>(bytes.number(3));
  if (bytes.maybe())
    made.containerLoad = {static_cast<std::int64_t>(bytes.number(9)), bytes.figure(), bytes.cores()};
  for (std::uint64_t count = bytes.number(6); count > 0; --count)
    made.containers.push_back({bytes.text(), bytes.text(), bytes.text(), bytes.text(), bytes.figure()});
  for (std::uint64_t count = bytes.number(6); count > 0; --count) {
    made.apps.push_back(
        {static_cast<Pid>(bytes.number(40)), bytes.text(), bytes.text(), bytes.text(), bytes.maybe()});
    made.access[made.apps.back().bundleID] = static_cast<Access>(bytes.number(3));
    made.tabs[made.apps.back().bundleID] = {static_cast<int>(bytes.number(99)),
                                            {{bytes.text(), static_cast<int>(bytes.number(99))}}};
  }
  for (std::uint64_t count = bytes.number(3); count > 0; --count)
    made.others.push_back({static_cast<Pid>(count), 0, bytes.text(), bytes.figure(), bytes.cores()});
  made.memoryInUse = bytes.figure();
  for (std::uint64_t count = bytes.number(3); count > 0; --count)
    made.containerUse.push_back({bytes.text(), bytes.figure(), bytes.cores(), 1});
  const auto count = static_cast<Pid>(bytes.number(40));
  for (Pid pid = 2; pid < count; ++pid) made.procs[pid] = process(bytes, pid);
  made.index();
  return made;
}

// Answers from what is left of the bytes, each question with the same answer when it is asked again.
class MadeSurroundings final : public Surroundings {
 public:
  explicit MadeSurroundings(Bytes& bytes) {
    for (std::string& one : texts_) one = bytes.text();
  }

  const Self& self() override { return self_; }
  std::optional<Git> git(const std::string& dir) override {
    if (!exists(dir)) return std::nullopt;
    return Git{pick(dir),       pick(dir + "b"),   pick(dir + "c"),
               pick(dir + "a"), exists(dir + "w"), pick(dir + "s")};
  }
  std::optional<ClaudeWork> claudeSession(Pid pid) override { return claudeJob(std::to_string(pid)); }
  std::optional<ClaudeWork> claudeJob(const std::string& dir) override {
    if (exists(dir)) return std::nullopt;
    return ClaudeWork{pick(dir), 7, pick(dir + "r"), pick(dir + "j"), pick(dir + "s"), now, pick(dir + "d")};
  }
  std::optional<std::string> prTitle(const std::optional<std::string>& repo,
                                     const std::optional<std::string>& /*pr*/) override {
    return repo ? std::optional(pick(*repo)) : std::nullopt;
  }
  bool exists(const std::string& path) override { return std::hash<std::string>()(path) % 2 == 0; }
  std::optional<std::string> fileHead(const std::string& path) override { return pick(path); }
  std::optional<std::string> deviceName(const std::string& path) override { return pick(path); }
  bool hasSimctl() override { return true; }
  std::string mediumDate(Timestamp /*moment*/) override { return "a day"; }

 private:
  std::string pick(const std::string& of) const {
    return texts_[std::hash<std::string>()(of) % texts_.size()];
  }

  Self self_{4242, 501, "/Users/dana"};
  std::array<std::string, 8> texts_;
};

}  // namespace

void runMachine(std::string_view input) {
  Bytes bytes(input);
  const std::optional<Snapshot> snapshot = machine(bytes);
  MadeSurroundings around(bytes);
  BenchMarks marks([] { return 0.0; });
  const std::vector<Finding> found = findings(*snapshot, {2, 3}, around, marks);
  promise(std::ranges::is_sorted(found, std::greater<>(), &Finding::impact), "the worst comes first");
  const Verdict said = verdict(*snapshot, found);
  promise(!said.headline.empty(), "something is said");
  const std::string report = text(*snapshot, found, {});
  promise(repairUtf8(report) == report, "the report is valid UTF-8");
  const BiggestUsers users = biggestUsers(*snapshot, 3, around);
  promise(users.restCpu >= 0 && users.restCount >= 0, "no more is explained than there is");
  const std::string document = jsonReport({*snapshot, found, {}, users, {}}, JsonLayout::oneLine);
  promise(repairUtf8(document) == document && document.find('\n') == document.size() - 1,
          "the document is one line of valid UTF-8");
  promise(nlohmann::json::accept(document), "the document is JSON");
  std::string table = topTable(users, *snapshot, 20);
  for (std::string_view rest = table; !rest.empty();)
    promise(cellWidth(takeLine(rest)) <= 20, "the table fits its terminal");
  const std::optional<Note> noNote;
  const std::optional<std::string> open = found.empty() ? std::nullopt : std::optional(found.front().id);
  panel::content({snapshot, found, false, noNote, {}, open}, {true, true, true, 900.0}, now);
}

}  // namespace tarnwick
