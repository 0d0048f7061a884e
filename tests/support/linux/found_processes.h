// What a finding says about a live process, from the source that the process table uses.
#pragma once

#include <unistd.h>

#include "records/finding.h"
#include "sampling/linux/linux_process_source.h"
#include "tests/support/testing.h"

namespace tarnwick {

class FoundProcesses {
 public:
  explicit FoundProcesses(std::uint32_t uid = ::getuid()) : source_(LinuxProcessOptions{.uid = uid}) {}

  // The remedy against that process as it is now.
  Signal signalTo(Pid pid, int number = SIGTERM) {
    const auto process = source_.process(pid);
    EXPECT_TRUE(process) << pid;
    return {pid, number, timestamp(static_cast<double>(process ? process->facts().started : 0))};
  }

  const ProcClock& clock() const { return source_.clock(); }

 private:
  LinuxProcessSource source_;
};

}  // namespace tarnwick
