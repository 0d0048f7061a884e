#include "sampling/decode/arguments.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "records/limits.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

constexpr std::size_t countBytes = sizeof(std::int32_t);
constexpr std::size_t usualArguments = 4;  // most processes have no more

// A block that fills the buffer to its last byte was probably longer.
bool mayHaveBeenCut(std::size_t blockBytes, std::size_t bufferBytes) { return blockBytes == bufferBytes; }

// The search finds a byte many at a time, which pays for the second one.
std::size_t endOfArgument(std::string_view bytes, std::size_t begin) {
  return std::min(bytes.find('\0', begin), bytes.size());
}

// Takes what the argument counts off the room that is left; false when none is.
bool addArgument(std::string_view bytes, std::vector<std::string>& arguments, std::size_t& room) {
  if (room < bytesPerArgument) return false;
  room -= bytesPerArgument;
  arguments.push_back(repairUtf8(bytes, std::min(longestArgument, room)));
  room -= arguments.back().size();
  return true;
}

}  // namespace

std::vector<std::string> argumentsInBlock(std::string_view block) {
  std::int32_t count = 0;
  if (block.size() <= countBytes) return {};
  std::memcpy(&count, block.data(), countBytes);
  const std::size_t pathEnd = block.find('\0', countBytes);
  if (pathEnd == std::string_view::npos) return {};
  std::size_t at = block.find_first_not_of('\0', pathEnd);
  std::vector<std::string> arguments;
  std::size_t room = longestCommandLine;
  // The count is not believed beyond this: memory grows with the bytes that are there.
  for (; count > 0 && at < block.size(); --count) {
    const std::size_t end = block.find('\0', at);
    if (end == std::string_view::npos) break;
    if (!addArgument(block.substr(at, end - at), arguments, room)) break;
    at = end + 1;
  }
  return arguments;
}

std::vector<std::string> procArguments(std::string_view bytes) {
  constexpr std::size_t most = longestCommandLine / bytesPerArgument;
  // Nearly all are so short that no limit can bite, even if each byte were an argument and repairing made
  // three of one: those are not counted beforehand.
  const bool isShort = (3 + bytesPerArgument) * bytes.size() <= longestArgument;
  std::size_t count = isShort ? usualArguments : 0;
  for (std::size_t at = 0; !isShort && at < bytes.size() && count < most; ++count)
    at = endOfArgument(bytes, at) + 1;
  std::vector<std::string> arguments;
  arguments.reserve(count);
  std::size_t room = longestCommandLine;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = endOfArgument(bytes, at);
    const std::string_view argument = bytes.substr(at, end - at);
    if (isShort) {
      arguments.push_back(repairUtf8(argument));
    } else if (!addArgument(argument, arguments, room)) {
      break;
    }
    at = end + 1;
  }
  return arguments;
}

void ArgumentBuffer::beginPass() {
  if (size_ != firstBytes) resize(firstBytes);
}

void ArgumentBuffer::resize(std::size_t bytes) {
  buffer_ = std::make_unique_for_overwrite<char[]>(bytes);
  size_ = bytes;
}

std::optional<std::string_view> ArgumentBuffer::read(const Query& query) {
  const auto bytes = bytesFrom(query);
  if (!bytes || !mayHaveBeenCut(bytes->size(), size_) || size_ >= mostBytes) return bytes;
  resize(mostBytes);
  return bytesFrom(query);
}

std::optional<std::string_view> ArgumentBuffer::bytesFrom(const Query& query) {
  const auto filled = query({buffer_.get(), size_});
  if (!filled) return std::nullopt;
  return std::string_view(buffer_.get(), std::min(*filled, size_));
}

}  // namespace tarnwick
