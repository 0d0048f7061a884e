// What is common to the fixed records that a kernel fills in: how much of the answer is there, and texts in
// fields of fixed size. Takes values and bytes, never asks the system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "records/utf8.h"

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
inline std::string textInField(std::string_view field) {
  return repairUtf8(field.substr(0, field.find('\0')));
}

}  // namespace tarnwick
