#include "records/utf8.h"

#include <utf8cpp/utf8.h>

#include <cstdint>
#include <cstring>
#include <iterator>

namespace tarnwick {
namespace {

// In valid UTF-8 a code point starts at every byte that is not a continuation byte (10xxxxxx).
bool startsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

template <typename Number>
std::uint64_t bytesAt(const char* from) {
  Number bytes = 0;
  std::memcpy(&bytes, from, sizeof bytes);
  return bytes;
}

// Nearly every text from outside is, and eight bytes at a time tell it at a tenth of the price, four at half.
// The last ones may overlap those before.
bool isAscii(std::string_view bytes) {
  constexpr std::size_t step = sizeof(std::uint64_t);
  constexpr std::size_t halfStep = sizeof(std::uint32_t);
  constexpr std::uint64_t highBits = 0x8080'8080'8080'8080U;
  const char* const end = bytes.data() + bytes.size();
  std::uint64_t seen = 0;
  if (bytes.size() >= step) {
    for (const char* at = bytes.data(); at < end - step; at += step) seen |= bytesAt<std::uint64_t>(at);
    seen |= bytesAt<std::uint64_t>(end - step);
  } else if (bytes.size() >= halfStep) {
    seen = bytesAt<std::uint32_t>(bytes.data()) | bytesAt<std::uint32_t>(end - halfStep);
  } else {
    for (const char byte : bytes) seen |= static_cast<unsigned char>(byte);
  }
  return (seen & highBits) == 0;
}

// Of a character that the end would cut, nothing is left.
std::string_view upTo(std::string_view bytes, std::size_t most) {
  constexpr std::size_t longestRest = 3;
  if (bytes.size() <= most) return bytes;
  std::size_t end = most;
  while (end > 0 && most - end < longestRest && !startsCharacter(bytes[end])) --end;
  return bytes.substr(0, startsCharacter(bytes[end]) ? end : most);
}

}  // namespace

std::string repairUtf8(std::string_view bytes) {
  if (isAscii(bytes)) return std::string(bytes);
  if (utf8::is_valid(bytes.begin(), bytes.end())) return std::string(bytes);
  std::string repaired;
  repaired.reserve(bytes.size());
  utf8::replace_invalid(bytes.begin(), bytes.end(), std::back_inserter(repaired));
  return repaired;
}

std::string repairUtf8(std::string_view bytes, std::size_t most) {
  std::string text = repairUtf8(bytes.size() <= most ? bytes : upTo(bytes, most));
  if (text.size() > most) text.resize(upTo(text, most).size());  // repaired, it may be three times as long
  return text;
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (const char byte : text) count += startsCharacter(byte) ? 1U : 0U;
  return count;
}

std::string firstCharacters(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  for (std::size_t seen = 0; end < text.size(); ++end) {
    if (!startsCharacter(text[end])) continue;
    if (seen == count) break;
    ++seen;
  }
  return std::string(text.substr(0, end));
}

}  // namespace tarnwick
