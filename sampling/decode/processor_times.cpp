#include "sampling/decode/processor_times.h"

#include <cstddef>
#include <limits>

#include "records/text.h"

namespace tarnwick {

std::optional<std::uint64_t> sumOfTimes(std::uint64_t user, std::uint64_t system) {
  if (user > std::numeric_limits<std::uint64_t>::max() - system) return std::nullopt;
  return user + system;
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
