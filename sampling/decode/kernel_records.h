// What is common to the fixed records and counters that a kernel fills in: how much of the answer is there,
// texts in fields of fixed size, counts in few bits, figures that must not overflow. Takes values and bytes,
// never asks the system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// Did the kernel answer with exactly this record? Another size is another release's record, or an error.
constexpr bool isWholeRecord(std::int64_t answeredBytes, std::size_t recordBytes) {
  return answeredBytes >= 0 && static_cast<std::uint64_t>(answeredBytes) == recordBytes;
}

// How many whole records of `recordBytes` (not 0) are in an answer, at most the `room` there was for them.
constexpr std::size_t wholeRecords(std::int64_t answeredBytes, std::size_t recordBytes, std::size_t room) {
  if (answeredBytes <= 0) return 0;
  const std::uint64_t count = static_cast<std::uint64_t>(answeredBytes) / recordBytes;
  return count < room ? static_cast<std::size_t>(count) : room;
}

// A text in a field of fixed size: up to the first zero byte, or all of it. Valid UTF-8.
std::string textInField(std::string_view field);

// The port in a field that holds two bytes in network order, whatever the field's own size.
std::uint16_t portInNetworkOrder(std::int32_t field);

// Ascending, each once: a server that listens on both internet protocols reports its port twice.
std::vector<std::uint16_t> eachPortOnce(std::vector<std::uint16_t> ports);

// User + system time, or any other sum of two readings; absent when it does not fit.
std::optional<std::uint64_t> sumOfTimes(std::uint64_t user, std::uint64_t system);

// Bytes in that many blocks; the largest number when it does not fit.
std::int64_t bytesInBlocks(std::uint64_t blocks, std::uint64_t blockBytes);

// Nanoseconds as ticks of a counter of that frequency. Whole seconds are exact and nothing overflows before
// the result does.
constexpr std::uint64_t ticksFromNanoseconds(std::uint64_t nanoseconds, std::uint64_t ticksPerSecond) {
  constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;
  const std::uint64_t rest = nanoseconds % nanosecondsPerSecond;
  return nanoseconds / nanosecondsPerSecond * ticksPerSecond + rest * ticksPerSecond / nanosecondsPerSecond;
}

// A counter that the kernel keeps in 32 bits and lets wrap, widened: right as long as it is read at least
// once in 2^32 ticks.
class WrappingCounter {
 public:
  // Everything counted so far, up to and with this reading.
  std::uint64_t advanceTo(std::uint32_t reading) {
    total_ += reading - last_;  // the difference wraps in 32 bits like the counter
    last_ = reading;
    return total_;
  }

 private:
  std::uint32_t last_ = 0;
  std::uint64_t total_ = 0;
};

}  // namespace tarnwick
