#include "sampling/decode/memory_info.h"

#include <limits>

#include "records/text.h"
#include "sampling/decode/number_words.h"

namespace tarnwick {
namespace {

// The bytes in the rest of a line after its name: a number and "kB".
std::optional<std::uint64_t> kilobytes(std::string_view rest) {
  const auto count = wholeNumber<std::uint64_t>(takeWord(rest));
  if (!count || takeWord(rest) != "kB") return std::nullopt;
  if (*count > std::numeric_limits<std::uint64_t>::max() / 1024) return std::nullopt;
  return *count * 1024;
}

std::uint64_t difference(std::optional<std::uint64_t> all, std::optional<std::uint64_t> part) {
  return all && part && *part <= *all ? *all - *part : 0;
}

}  // namespace

std::optional<std::uint64_t> kilobyteField(std::string_view text, std::string_view name) {
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    if (!line.starts_with(name) || line.substr(name.size(), 1) != ":") continue;
    return kilobytes(line.substr(name.size() + 1));
  }
  return std::nullopt;
}

MemoryInfo memoryInfo(std::string_view meminfo) {
  return {.total = kilobyteField(meminfo, "MemTotal"),
          .available = kilobyteField(meminfo, "MemAvailable"),
          .swapTotal = kilobyteField(meminfo, "SwapTotal"),
          .swapFree = kilobyteField(meminfo, "SwapFree"),
          .shared = kilobyteField(meminfo, "Shmem")};
}

std::uint64_t swapUsed(const MemoryInfo& memory) { return difference(memory.swapTotal, memory.swapFree); }

std::uint64_t memoryInUse(const MemoryInfo& memory) { return difference(memory.total, memory.available); }

std::optional<ProcPages> procPages(std::string_view bytes) {
  NumberWords words(bytes);
  words.skip(1);
  const auto resident = words.next<std::uint64_t>();
  const auto shared = words.next<std::uint64_t>();
  if (!resident || !shared) return std::nullopt;
  return ProcPages{*resident, *shared};
}

}  // namespace tarnwick
