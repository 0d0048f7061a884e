#include "sampling/decode/processor_times.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "records/text.h"

namespace tarnwick {

std::optional<std::uint64_t> sumOfTimes(std::uint64_t user, std::uint64_t system) {
  if (user > std::numeric_limits<std::uint64_t>::max() - system) return std::nullopt;
  return user + system;
}

int processorsInList(std::string_view list) {
  constexpr int most = 1 << 20;
  list = takeLine(list);
  int count = 0;
  while (!list.empty()) {
    const std::string_view range = list.substr(0, list.find(','));
    list.remove_prefix(std::min(range.size() + 1, list.size()));
    const auto dash = range.find('-');
    const auto first = wholeNumber<int>(range.substr(0, dash));
    const auto last = dash == std::string_view::npos ? first : wholeNumber<int>(range.substr(dash + 1));
    if (!first || !last || *first < 0 || *last < *first || *last > most || count > most) return 0;
    count += *last - *first + 1;
  }
  return count;
}

CpuTicks cpuTicksFromStat(std::string_view stat) {
  // user nice system idle iowait irq softirq steal. The two guest columns that follow are already in user
  // and nice: reading them too would count a virtual machine's work twice.
  constexpr std::size_t columns = 8;
  constexpr std::size_t idleColumn = 3;
  constexpr std::size_t waitColumn = 4;
  auto line = lineOf(stat, "cpu");
  if (!line) return {};
  CpuTicks ticks;
  for (std::size_t column = 0; column < columns; ++column) {
    const std::string_view word = takeWord(*line);
    if (word.empty() && column > idleColumn) break;  // old kernels have fewer columns
    const auto value = wholeNumber<std::uint64_t>(word);
    const auto total = value ? sumOfTimes(ticks.total, *value) : std::nullopt;
    if (!total) return {};
    ticks.total = *total;
    if (column != idleColumn && column != waitColumn) ticks.busy += *value;
  }
  return ticks;
}

}  // namespace tarnwick
