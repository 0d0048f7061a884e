#include "sampling/decode/proc_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

#include "records/text.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

// One line of net/tcp or net/tcp6, such as
// "  0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 00000000  1000        0 4711 1 ...".
std::optional<Listener> listenerOfLine(std::string_view line) {
  constexpr std::string_view listening = "0A";
  std::array<std::string_view, 10> words;
  for (auto& word : words) word = takeWord(line);
  if (words[3] != listening) return std::nullopt;
  const auto colon = words[1].rfind(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const auto port = wholeNumber<std::uint16_t>(words[1].substr(colon + 1), 16);
  const auto inode = wholeNumber<std::uint64_t>(words[9]);
  if (!port || !inode) return std::nullopt;
  return Listener{*inode, *port};
}

}  // namespace

std::optional<ProcStat> procStat(std::string_view bytes) {
  // The name may hold blanks, brackets and line feeds of its own; only the last ')' surely ends it. It is
  // close to the front, so it is searched from there.
  const auto open = bytes.find('(');
  auto close = bytes.find(')', std::min(open, bytes.size()));
  if (close == std::string_view::npos) return std::nullopt;
  for (auto next = close; next != std::string_view::npos; next = bytes.find(')', next + 1)) close = next;
  std::string_view rest = bytes.substr(close + 1);
  std::array<std::string_view, 20> words;  // from the state, the third field, to the start, the 22nd
  for (auto& word : words) word = takeWord(rest);
  const auto ppid = wholeNumber<Pid>(words[1]);
  const auto terminal = wholeNumber<std::int32_t>(words[4]);
  const auto flags = wholeNumber<std::uint32_t>(words[6]);
  const auto user = wholeNumber<std::uint64_t>(words[11]);
  const auto system = wholeNumber<std::uint64_t>(words[12]);
  const auto start = wholeNumber<std::uint64_t>(words[19]);
  if (words[0].size() != 1 || !ppid || *ppid < 0 || !terminal || !flags || !user || !system || !start) {
    return std::nullopt;
  }
  return ProcStat{repairUtf8(bytes.substr(open + 1, close - open - 1)),
                  words[0].front(),
                  *ppid,
                  *terminal,
                  *flags,
                  *user,
                  *system,
                  *start,
                  wholeNumber<std::int64_t>(words[17]).value_or(1)};
}

std::optional<std::int64_t> startSeconds(const ProcStat& stat, const ProcClock& clock) {
  if (clock.bootTime < 0 || clock.ticksPerSecond == 0) return std::nullopt;
  const std::uint64_t age = stat.startTicks / clock.ticksPerSecond;
  if (age > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max() - clock.bootTime)) {
    return std::nullopt;
  }
  return clock.bootTime + static_cast<std::int64_t>(age);
}

std::optional<ProcPages> procPages(std::string_view bytes) {
  takeWord(bytes);
  const auto resident = wholeNumber<std::uint64_t>(takeWord(bytes));
  const auto shared = wholeNumber<std::uint64_t>(takeWord(bytes));
  if (!resident || !shared) return std::nullopt;
  return ProcPages{*resident, *shared};
}

std::optional<std::uint64_t> kilobyteField(std::string_view text, std::string_view name) {
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    if (!line.starts_with(name) || line.substr(name.size(), 1) != ":") continue;
    line.remove_prefix(name.size() + 1);
    const auto value = wholeNumber<std::uint64_t>(takeWord(line));
    if (!value || takeWord(line) != "kB" || *value > std::numeric_limits<std::uint64_t>::max() / 1024) {
      return std::nullopt;
    }
    return *value * 1024;
  }
  return std::nullopt;
}

std::optional<std::int64_t> bootTime(std::string_view text) {
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    if (takeWord(line) == "btime") return wholeNumber<std::int64_t>(takeWord(line));
  }
  return std::nullopt;
}

std::optional<Pid> newestPid(std::string_view text) {
  for (int load = 0; load < 4; ++load) takeWord(text);  // three averages, running/all threads
  const auto pid = wholeNumber<Pid>(takeWord(text));
  return pid && *pid > 0 ? pid : std::nullopt;
}

std::vector<std::string> procArguments(std::string_view bytes) {
  std::vector<std::string> arguments;
  while (!bytes.empty()) {
    const std::string_view argument = bytes.substr(0, bytes.find('\0'));
    arguments.push_back(repairUtf8(argument));
    bytes.remove_prefix(std::min(argument.size() + 1, bytes.size()));
  }
  return arguments;
}

std::string procLinkPath(std::string_view target) {
  constexpr std::string_view deleted = " (deleted)";
  if (target.ends_with(deleted)) target.remove_suffix(deleted.size());
  return repairUtf8(target);
}

std::optional<std::uint64_t> socketInode(std::string_view target) {
  constexpr std::string_view opening = "socket:[";
  if (!target.starts_with(opening) || !target.ends_with(']')) return std::nullopt;
  target.remove_prefix(opening.size());
  target.remove_suffix(1);
  return wholeNumber<std::uint64_t>(target);
}

std::vector<Listener> tcpListeners(std::string_view text) {
  std::vector<Listener> listeners;
  while (!text.empty()) {
    if (const auto listener = listenerOfLine(takeLine(text))) listeners.push_back(*listener);
  }
  return listeners;
}

}  // namespace tarnwick
