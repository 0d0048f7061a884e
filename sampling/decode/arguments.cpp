#include "sampling/decode/arguments.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "records/utf8.h"

namespace tarnwick {
namespace {

constexpr std::size_t countBytes = sizeof(std::int32_t);

// A block that fills the buffer to its last byte was probably longer.
bool mayHaveBeenCut(std::size_t blockBytes, std::size_t bufferBytes) { return blockBytes == bufferBytes; }

}  // namespace

std::vector<std::string> argumentsInBlock(std::string_view block) {
  std::int32_t count = 0;
  if (block.size() <= countBytes) return {};
  std::memcpy(&count, block.data(), countBytes);
  const std::size_t pathEnd = block.find('\0', countBytes);
  if (pathEnd == std::string_view::npos) return {};
  std::size_t at = block.find_first_not_of('\0', pathEnd);
  std::vector<std::string> arguments;
  // The count is not believed beyond this: memory grows with the bytes that are there.
  for (; count > 0 && at < block.size(); --count) {
    const std::size_t end = std::min(block.find('\0', at), block.size());
    arguments.push_back(repairUtf8(block.substr(at, end - at)));
    at = end + 1;
  }
  return arguments;
}

std::vector<std::string> procArguments(std::string_view bytes) {
  std::vector<std::string> arguments;
  arguments.reserve(static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\0')) + 1);
  while (!bytes.empty()) {
    const std::string_view argument = bytes.substr(0, bytes.find('\0'));
    arguments.push_back(repairUtf8(argument));
    bytes.remove_prefix(std::min(argument.size() + 1, bytes.size()));
  }
  return arguments;
}

void ArgumentBuffer::beginPass() {
  if (buffer_.size() != firstBytes) buffer_ = std::vector<char>(firstBytes);
}

std::optional<std::string_view> ArgumentBuffer::read(const Query& query) {
  const auto bytes = bytesFrom(query);
  if (!bytes || !mayHaveBeenCut(bytes->size(), buffer_.size()) || buffer_.size() >= mostBytes) return bytes;
  buffer_ = std::vector<char>(mostBytes);
  return bytesFrom(query);
}

std::optional<std::string_view> ArgumentBuffer::bytesFrom(const Query& query) {
  const auto filled = query(buffer_);
  if (!filled) return std::nullopt;
  return std::string_view(buffer_.data(), std::min(*filled, buffer_.size()));
}

}  // namespace tarnwick
