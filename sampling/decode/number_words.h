// The numbers in a line of words, as the kernel writes the facts of a process: each word is passed over once,
// without first being cut out. Words are parted as takeWord() parts them. Inline, because it is the inner
// loop of a check.
#pragma once

#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>

namespace tarnwick {

class NumberWords {
 public:
  // `text` must outlive the object.
  explicit NumberWords(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  void skip(int words) {
    const char* at = at_;
    for (; words > 0; --words) at = wordEnd(pastBlanks(at));
    at_ = at;
  }

  // The only byte of the next word; absent when it is longer or there is none.
  std::optional<char> letter() {
    const char* const begin = pastBlanks(at_);
    at_ = wordEnd(begin);
    return at_ - begin == 1 ? std::optional(*begin) : std::nullopt;
  }

  // The next word, which is passed in any case; absent when it is no whole number or does not fit.
  template <std::integral Number>
  std::optional<Number> next() {
    const char* const begin = pastBlanks(at_);
    // By far the most numbers are one digit long.
    if (end_ - begin > 1 && digitOf(*begin) < 10 && isBlank(begin[1])) {
      at_ = begin + 1;
      return static_cast<Number>(digitOf(*begin));
    }
    const bool negative = std::is_signed_v<Number> && begin != end_ && *begin == '-';
    const char* const firstDigit = begin + (negative ? 1 : 0);
    const char* at = firstDigit;
    std::uint64_t size = 0;
    for (; at != end_ && digitOf(*at) < 10; ++at) size = size * 10 + digitOf(*at);
    if (at == firstDigit || at - firstDigit > surelyFit || !isEnd(at)) return nextByTheBook<Number>(begin);
    at_ = at;
    const auto value = static_cast<std::int64_t>(negative ? 0 - size : size);
    return std::in_range<Number>(value) ? std::optional(static_cast<Number>(value)) : std::nullopt;
  }

 private:
  static constexpr std::ptrdiff_t surelyFit = 18;  // digits, 64 bits

  // Everything that a kernel does not write, and numbers near the end of the range.
  template <std::integral Number>
  std::optional<Number> nextByTheBook(const char* begin) {
    Number value{};
    const auto result = std::from_chars(begin, end_, value);
    at_ = wordEnd(result.ptr);
    return result.ec == std::errc{} && result.ptr == at_ ? std::optional(value) : std::nullopt;
  }

  static bool isBlank(char byte) { return static_cast<unsigned char>(byte) <= ' '; }
  static unsigned digitOf(char byte) {
    return static_cast<unsigned char>(byte) - unsigned{'0'};
  }  // if below 10
  bool isEnd(const char* at) const { return at == end_ || isBlank(*at); }
  const char* pastBlanks(const char* at) const {
    while (at != end_ && isBlank(*at)) ++at;
    return at;
  }
  const char* wordEnd(const char* at) const {
    while (!isEnd(at)) ++at;
    return at;
  }

  const char* at_;
  const char* end_;
};

}  // namespace tarnwick
