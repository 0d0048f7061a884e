// Processes as the kernel of macOS tells them: libproc, and sysctl for arguments. Processor and wall times
// are in Mach ticks. Nothing here fails, see process_source.h. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sampling/decode/arguments.h"
#include "sampling/process_source.h"

namespace tarnwick {

class MacosProcessSource : public ProcessSource {
 public:
  static constexpr std::size_t pathBytes = 4'096;

  explicit MacosProcessSource(Self self);

  void beginPass() override;
  // By effective user id.
  std::vector<Pid> myPids() override;
  // Of Mach ticks as the kernel counts them. A program under translation sees another Mach clock than the
  // kernel's, and is answered with the time since start in the kernel's ticks.
  std::uint64_t wallTime() override;
  std::optional<std::uint64_t> processorTime(Pid pid) override;
  std::unique_ptr<Process> process(Pid pid) override;

 private:
  class OneProcess;

  Self self_;
  std::uint64_t translatedTicksPerSecond_;  // the kernel's; 0 when this program runs untranslated
  ArgumentBuffer argumentBuffer_;
  std::vector<char> pathBuffer_ = std::vector<char>(pathBytes);
};

}  // namespace tarnwick
