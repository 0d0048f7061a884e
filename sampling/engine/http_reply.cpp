#include "sampling/engine/http_reply.h"

#include <charconv>
#include <cstddef>
#include <system_error>

namespace tarnwick {
namespace {

constexpr std::string_view blankLine = "\r\n\r\n";
constexpr std::size_t mostHeadBytes = std::size_t{1} << 20U;
constexpr int notModified = 304;

// The word between the first and the second blank. Words are parted by blanks alone, and two blanks in a
// row hold an empty word, so a status line has its number here or is not one. Bytes that are no UTF-8 need
// no repair for this: repairing never makes or takes a blank or a digit.
std::optional<int> status(std::string_view head) {
  const std::size_t first = head.find(' ');
  if (first == std::string_view::npos) return std::nullopt;
  std::string_view word = head.substr(first + 1);
  word = word.substr(0, word.find(' '));
  int number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc{} || end != word.data() + word.size()) return std::nullopt;
  return number;
}

bool isSuccess(int status) { return (status >= 200 && status <= 299) || status == notModified; }

}  // namespace

std::optional<std::string_view> successfulBody(std::string_view reply) {
  const std::size_t headEnd = reply.substr(0, mostHeadBytes + blankLine.size()).find(blankLine);
  if (headEnd == std::string_view::npos) return std::nullopt;
  const std::optional<int> number = status(reply.substr(0, headEnd));
  if (!number || !isSuccess(*number)) return std::nullopt;
  return reply.substr(headEnd + blankLine.size());
}

}  // namespace tarnwick
