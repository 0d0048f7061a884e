#include "records/finding.h"

#include <fmt/ranges.h>

#include "records/formatted.h"
#include "records/one_line.h"

namespace tarnwick {
namespace {

constexpr std::int32_t killNumber = 9;

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

// Feeds one value after another into a running hash (the mixing step of boost::hash_combine).
class Hasher {
 public:
  template <class Value>
  void feed(const Value& value) {
    hash_ ^= std::hash<Value>{}(value) + 0x9e3779b97f4a7c15U + (hash_ << 6U) + (hash_ >> 2U);
  }
  std::size_t result() const { return hash_; }

 private:
  std::size_t hash_ = 0;
};

}  // namespace

std::string_view label(Bucket bucket) {
  switch (bucket) {
    case Bucket::now:
      return "BUSY NOW";
    case Bucket::always:
      return "ALWAYS ON";
    case Bucket::leftovers:
      return "FORGOTTEN";
  }
  return {};
}

bool All::operator==(const All& other) const { return fixes == other.fixes; }

std::string Fix::command() const {
  return oneLine(
      std::visit(Overloaded{
                     [](const Signal& f) {
                       return formatted("kill -{} {}", f.number == killNumber ? "KILL" : "TERM", f.pid);
                     },
                     [](const QuitApp& f) { return "Cmd-Q " + f.bundleID; },
                     [](const DockerStop& f) { return "docker stop " + f.container; },
                     [](const SimShutdown& f) { return "simctl shutdown " + f.udid; },
                     [](const OpenSettings& f) { return "open x-apple.systempreferences:" + f.pane; },
                     [](const AskAutomation& f) {
                       return "ask macOS to let Tarnwick read the tab addresses of " + f.bundleID;
                     },
                     [](const CloseDuplicateTabs& f) {
                       return "close the duplicate tabs in " + f.bundleID + ", keep the first copy";
                     },
                     [](const OpenTab& f) { return "open " + f.address + " in " + f.bundleID; },
                     [](const All& f) {
                       std::vector<std::string> commands;
                       for (const Fix& fix : f.fixes) commands.push_back(fix.command());
                       return formatted("{}", fmt::join(commands, "; "));
                     },
                 },
                 kind));
}

std::vector<Pid> Fix::pids() const {
  if (const auto* signal = std::get_if<Signal>(&kind)) return {signal->pid};
  std::vector<Pid> all;
  if (const auto* several = std::get_if<All>(&kind)) {
    for (const Fix& fix : several->fixes) {
      const std::vector<Pid> some = fix.pids();
      all.insert(all.end(), some.begin(), some.end());
    }
  }
  return all;
}

}  // namespace tarnwick

std::size_t std::hash<tarnwick::Bucket>::operator()(tarnwick::Bucket bucket) const noexcept {
  return std::hash<std::string_view>{}(tarnwick::label(bucket));
}

std::size_t std::hash<tarnwick::Fix>::operator()(const tarnwick::Fix& fix) const noexcept {
  using namespace tarnwick;
  Hasher hasher;
  hasher.feed(fix.kind.index());
  std::visit(Overloaded{
                 [&](const Signal& f) {
                   hasher.feed(f.pid);
                   hasher.feed(f.number);
                   hasher.feed(seconds(f.started));
                 },
                 [&](const QuitApp& f) { hasher.feed(f.bundleID); },
                 [&](const DockerStop& f) { hasher.feed(f.container); },
                 [&](const SimShutdown& f) { hasher.feed(f.udid); },
                 [&](const OpenSettings& f) { hasher.feed(f.pane); },
                 [&](const AskAutomation& f) { hasher.feed(f.bundleID); },
                 [&](const CloseDuplicateTabs& f) { hasher.feed(f.bundleID); },
                 [&](const OpenTab& f) {
                   hasher.feed(f.bundleID);
                   hasher.feed(f.address);
                 },
                 [&](const All& f) {
                   hasher.feed(f.fixes.size());
                   for (const Fix& member : f.fixes) hasher.feed(member);
                 },
             },
             fix.kind);
  return hasher.result();
}
