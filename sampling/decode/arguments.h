// The command line of a process as two kernels hand it out. On macOS one block holds the number of arguments,
// the executable's path, zero bytes as padding, the arguments, then the environment, which is never read. On
// Linux the file PID/cmdline holds the arguments alone. Both are the process's own memory, so everything in
// them may be hostile: arguments are kept up to the longest lengths of records/limits.h. Nothing here asks
// the system: the query is handed in. Texts in the results are valid UTF-8.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The arguments in PID/cmdline. Each ends with a zero byte, which the last may lack; empty ones stay.
std::vector<std::string> procArguments(std::string_view bytes);

// The arguments in a block. Empty when the count is not positive, the path has no end, or nothing follows it;
// when the block ends early, those that it holds to their end.
std::vector<std::string> argumentsInBlock(std::string_view block);

// The buffer that the command lines of one pass are read into: small at first, and large for the rest of the
// pass once one did not fit. One thread at a time.
class ArgumentBuffer {
 public:
  static constexpr std::size_t firstBytes = 65'536;
  static constexpr std::size_t mostBytes = 1'048'576;  // what lies beyond is cut

  // Fills the buffer with one process's bytes and answers how many that took; absent on failure.
  using Query = std::function<std::optional<std::size_t>(std::span<char> buffer)>;

  // Back to the small buffer.
  void beginPass();

  // The process's bytes, in the buffer until the next call; absent on any failure.
  std::optional<std::string_view> read(const Query& query);

 private:
  std::optional<std::string_view> bytesFrom(const Query& query);

  void resize(std::size_t bytes);

  // Not filled with zeros first: most command lines reach its first page only.
  std::size_t size_ = firstBytes;
  std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(firstBytes);
};

}  // namespace tarnwick
