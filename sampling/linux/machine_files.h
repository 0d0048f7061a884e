// What two files of /proc tell of the whole machine and more than one part of a check needs: each is read
// once in a pass, by whoever asks first. Used by one thread at a time.
#pragma once

#include <cstdint>
#include <optional>

#include "sampling/decode/memory_info.h"
#include "sampling/decode/processor_times.h"
#include "sampling/linux/proc_reader.h"

namespace tarnwick {

class MachineFiles {
 public:
  // `reader` must outlive the object.
  explicit MachineFiles(const ProcReader& reader) : reader_(reader) {}

  // Read anew at each question; zeros when unreadable. The boot time stands in the same file: a pass that
  // begins next need not read it again.
  CpuTicks cpuTicks();

  // Whatever was read before cpuTicks() was asked last is old now.
  void beginPass();

  // Absent when it cannot be read.
  const std::optional<MemoryInfo>& memory();

  // Seconds since 1970; absent when missing or not positive. The kernel computes it from the time of day, and
  // that may be set between two passes.
  std::optional<std::int64_t> bootTime();

 private:
  // Absent: not read yet. What was read is absent where the file does not tell.
  template <typename Fact>
  using Once = std::optional<std::optional<Fact>>;

  const ProcReader& reader_;
  Once<std::int64_t> bootTimeOfTicks_;  // for the next pass
  Once<std::int64_t> bootTime_;
  Once<MemoryInfo> memory_;
};

}  // namespace tarnwick
