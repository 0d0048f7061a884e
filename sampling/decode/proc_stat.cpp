#include "sampling/decode/proc_stat.h"

#include <algorithm>

#include "records/text.h"
#include "records/utf8.h"
#include "sampling/decode/number_words.h"

namespace tarnwick {

std::optional<ProcStat> procStat(std::string_view bytes) {
  // The name may hold blanks, brackets and line feeds of its own; only the last ')' surely ends it. It is
  // close to the front, so it is searched from there.
  const auto open = bytes.find('(');
  auto close = bytes.find(')', std::min(open, bytes.size()));
  if (close == std::string_view::npos) return std::nullopt;
  for (auto next = close; next != std::string_view::npos; next = bytes.find(')', next + 1)) close = next;
  NumberWords words(bytes.substr(close + 1));  // from the state, the third field, to the start, the 22nd
  const auto state = words.letter();
  const auto ppid = words.next<Pid>();
  words.skip(1);
  const auto session = words.next<Pid>();
  const auto terminal = words.next<std::int32_t>();
  words.skip(1);
  const auto flags = words.next<std::uint32_t>();
  words.skip(4);
  const auto user = words.next<std::uint64_t>();
  const auto system = words.next<std::uint64_t>();
  words.skip(4);
  const auto threads = words.next<std::int64_t>();
  words.skip(1);
  const auto start = words.next<std::uint64_t>();
  if (!state || !ppid || *ppid < 0 || !session || !terminal || !flags || !user || !system || !start) {
    return std::nullopt;
  }
  return ProcStat{repairUtf8(bytes.substr(open + 1, close - open - 1)),
                  *state,
                  *ppid,
                  *session,
                  *terminal,
                  *flags,
                  *user,
                  *system,
                  *start,
                  threads.value_or(1)};
}

std::uint64_t residentPages(std::string_view bytes) {
  constexpr int before = 21;  // from the state, the third field, to the 24th
  std::string_view rest = bytes.substr(bytes.rfind(')') + 1);
  for (int word = 0; word < before; ++word) takeWord(rest);
  return wholeNumber<std::uint64_t>(takeWord(rest)).value_or(0);
}

std::optional<Pid> newestPid(std::string_view text) {
  for (int load = 0; load < 4; ++load) takeWord(text);  // three averages, running/all threads
  const auto pid = wholeNumber<Pid>(takeWord(text));
  return pid && *pid > 0 ? pid : std::nullopt;
}

std::string procLinkPath(std::string_view target) {
  constexpr std::string_view deleted = " (deleted)";
  if (target.ends_with(deleted)) target.remove_suffix(deleted.size());
  return repairUtf8(target);
}

}  // namespace tarnwick
