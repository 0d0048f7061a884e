// The command line of a process as the kernel of macOS hands it out: one block with the number of arguments,
// the executable's path, zero bytes as padding, the arguments, then the environment, which is never read. The
// block is the process's own memory, so everything in it may be hostile. Nothing here asks the system: the
// query is handed in. Texts in the results are valid UTF-8.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The arguments in a block. Empty when the count is not positive, the path has no end, or nothing follows it;
// what the block holds of them when it ends early.
std::vector<std::string> argumentsInBlock(std::string_view block);

// The buffer that the blocks of one pass are read into: small at first, and large for the rest of the pass
// once a block did not fit. One thread at a time.
class ArgumentBuffer {
 public:
  static constexpr std::size_t firstBytes = 65'536;
  static constexpr std::size_t mostBytes = 1'048'576;  // what lies beyond is cut

  // Fills the buffer with one process's block and answers how many bytes that took; absent on failure.
  using Query = std::function<std::optional<std::size_t>(std::span<char> buffer)>;

  // Back to the small buffer.
  void beginPass();

  // The command line; empty on any failure.
  std::vector<std::string> read(const Query& query);

 private:
  std::optional<std::string_view> blockFrom(const Query& query);

  std::vector<char> buffer_ = std::vector<char>(firstBytes);
};

}  // namespace tarnwick
