#include "sampling/linux/process_memory.h"

#include <unistd.h>

#include <algorithm>
#include <limits>
#include <string>

#include "sampling/decode/memory_info.h"

namespace tarnwick {
namespace {

constexpr std::uint64_t mostBytes = std::numeric_limits<std::uint64_t>::max();

std::optional<std::uint64_t> sum(std::optional<std::uint64_t> a, std::optional<std::uint64_t> b) {
  if (!a || !b || *b > mostBytes - *a) return std::nullopt;
  return *a + *b;
}

std::uint64_t pageSizeOfSystem() {
  const long size = ::sysconf(_SC_PAGESIZE);
  return size > 0 ? static_cast<std::uint64_t>(size) : 4096;
}

// The memory comes after the groups that the process belongs to, and of these there may be 65,536.
std::optional<std::string> wholeStatus(const ProcessFiles& process) {
  constexpr std::size_t most = std::size_t{1} << 20U;
  for (std::string text(4096, '\0');; text.resize(text.size() * 4)) {
    const auto read = process.read("status", text);
    if (!read) return std::nullopt;
    if (read->size() == text.size() && text.size() < most) continue;
    text.resize(read->size());
    return text;
  }
}

}  // namespace

std::optional<std::uint64_t> footprintOfShares(std::string_view rollup) {
  const auto resident = sum(kilobyteField(rollup, "Pss_Anon"), kilobyteField(rollup, "Pss_Shmem"));
  return sum(resident, kilobyteField(rollup, "SwapPss"));
}

ProcessMemory::ProcessMemory(MachineFiles& machine) : files_(machine), pageSize_(pageSizeOfSystem()) {}

std::optional<MemoryUse> ProcessMemory::of(const ProcessFiles& process) {
  const auto text = process.read("statm", buffer_);
  const auto pages = text ? procPages(*text) : std::nullopt;
  if (!pages || pages->resident > mostBytes / pageSize_) return std::nullopt;
  // The two counters are not read at one instant, so the second may pass the first.
  const std::uint64_t shared = std::min(pages->shared, pages->resident) * pageSize_;
  MemoryUse use;
  use.resident = pages->resident * pageSize_;
  use.footprint = use.resident - shared;
  if (machine().swaps || (machine().sharesMemory && shared >= sharedMemoryMatters)) {
    if (const auto exact = footprintFromStatus(process)) use.footprint = *exact;
  }
  return use;
}

const ProcessMemory::Machine& ProcessMemory::machine() {
  if (!machine_) {
    const auto& info = files_.memory();
    machine_ = Machine{.swaps = !info || info->swapTotal != info->swapFree,
                       .sharesMemory = !info || info->shared.value_or(1) > 0};
  }
  return *machine_;
}

std::optional<std::uint64_t> ProcessMemory::footprintFromStatus(const ProcessFiles& process) {
  const auto text = wholeStatus(process);
  if (!text) return std::nullopt;
  const auto resident = sum(kilobyteField(*text, "RssAnon"), kilobyteField(*text, "RssShmem"));
  return sum(resident, kilobyteField(*text, "VmSwap"));
}

}  // namespace tarnwick
