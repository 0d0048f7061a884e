// Taking foreign text apart: lines, words, numbers, names. Pure; any bytes. The results are parts of the
// text that they were taken from.
#pragma once

#include <charconv>
#include <concepts>
#include <cstddef>
#include <optional>
#include <string_view>
#include <system_error>

namespace tarnwick {

// Takes the next line, without its line feed, off the front of `text`; empty when none is left.
inline std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

// The rest of the line whose first word is `key`; absent when there is none.
std::optional<std::string_view> lineOf(std::string_view text, std::string_view key);

// Takes the next word off the front of `text`; empty when none is left. Blanks, line ends and control
// characters part words. These are a few bytes long, which a plain loop passes three times as fast as the
// searches of the standard library.
inline std::string_view takeWord(std::string_view& text) {
  const auto isBlank = [](char byte) { return static_cast<unsigned char>(byte) <= ' '; };
  std::size_t begin = 0;
  while (begin < text.size() && isBlank(text[begin])) ++begin;
  std::size_t end = begin;
  while (end < text.size() && !isBlank(text[end])) ++end;
  const std::string_view word = text.substr(begin, end - begin);
  text.remove_prefix(end);
  return word;
}

// The text without any of the `dropped` bytes at its ends; usually without white space and line ends.
std::string_view trimmed(std::string_view text, std::string_view dropped = " \t\r\n\v\f");

// The whole of `text` as a number, a decimal one unless another `base` is named; absent when anything else
// stands in it or it does not fit.
template <std::integral Number>
std::optional<Number> wholeNumber(std::string_view text, auto... base) {
  Number value{};
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value, base...);
  if (result.ec != std::errc{} || result.ptr != end) return std::nullopt;
  return value;
}

// Can the text be one part of a path without leading anywhere else?
bool isPlainFileName(std::string_view name);

}  // namespace tarnwick
