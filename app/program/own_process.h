// What this program asks the system about itself. A figure that cannot be had is 0.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tarnwick {

// A path that starts this program again; absent when it cannot be told. Any thread.
std::optional<std::string> ownExecutable();

// On macOS a program finds its application only from the file itself: started through a symbolic link, it
// starts once more as that file. Elsewhere, and when that fails, does nothing. Call first of all.
void leaveSymbolicLink(char** argv);

// Hands memory that the program has freed back to the system. Any thread.
void freeMemory();

// What running this program costs, for the benchmark mode.
class OwnCost {
 public:
  virtual ~OwnCost() = default;

  // Memory this process is charged for now, in bytes: the same meaning as `Proc::footprint`.
  virtual std::uint64_t footprint() = 0;

  // The most it was charged for in its life, in bytes.
  virtual std::uint64_t peakFootprint() = 0;

  // User and system time of all children that have ended, in milliseconds.
  virtual double childMilliseconds() = 0;
};

// The figures of the running program.
std::unique_ptr<OwnCost> ownCost();

}  // namespace tarnwick
