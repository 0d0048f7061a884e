// The running program's own cost, from its status file and the kernel's accounts.
#pragma once

#include "app/program/own_process.h"

namespace tarnwick {

class LinuxOwnCost : public OwnCost {
 public:
  // Anonymous, shared and swapped memory.
  std::uint64_t footprint() override;

  // The kernel keeps no peak of the footprint. This is the peak of the resident set, which adds the pages
  // of mapped files, so it errs to the high side, and never less than the footprint now. The status file's
  // peak, because the one of getrusage is inherited from the shell that started the program.
  std::uint64_t peakFootprint() override;

  double childMilliseconds() override;
};

}  // namespace tarnwick
