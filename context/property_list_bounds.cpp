#include "context/property_list_bounds.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "records/limits.h"

namespace tarnwick {
namespace {

// A device's list is a flat dictionary of a dozen entries.
constexpr std::ptrdiff_t mostMarks = 2'000;
constexpr std::uint64_t mostUnfoldedBytes = std::uint64_t{16} << 20U;

constexpr std::string_view binaryMagic = "bplist00";
constexpr std::size_t trailerBytes = 32;

// A big-endian number of `size` bytes at `at`; both must lie inside.
std::uint64_t numberAt(std::string_view bytes, std::size_t at, std::size_t size) {
  std::uint64_t number = 0;
  for (const char byte : bytes.substr(at, size)) number = number << 8U | static_cast<unsigned char>(byte);
  return number;
}

// How many entries the container at `at` has, a dictionary's keys and values both; 0 for other objects.
// Absent when its count runs out of the list.
std::optional<std::uint64_t> entriesAt(std::string_view bytes, std::size_t at) {
  const std::uint64_t marker = numberAt(bytes, at, 1);
  const std::uint64_t kind = marker >> 4U;
  constexpr std::uint64_t array = 0xA;
  constexpr std::uint64_t set = 0xC;
  constexpr std::uint64_t dictionary = 0xD;
  if (kind != array && kind != set && kind != dictionary) return 0;
  std::uint64_t count = marker & 0xFU;
  if (count == 0xF) {  // the count is an integer object of its own
    if (at + 2 > bytes.size()) return std::nullopt;
    const std::size_t size = std::size_t{1} << (numberAt(bytes, at + 1, 1) & 3U);
    if (at + 2 + size > bytes.size()) return std::nullopt;
    count = numberAt(bytes, at + 2, size);
  }
  if (count > bytes.size()) return std::nullopt;
  return kind == dictionary ? 2 * count : count;
}

// Unfolded, a list holds at most the product of its containers' sizes; the product bounds its depth too.
bool isHarmlessBinary(std::string_view bytes) {
  if (bytes.size() < binaryMagic.size() + trailerBytes) return false;
  const std::size_t trailer = bytes.size() - trailerBytes;
  const std::size_t offsetSize = numberAt(bytes, trailer + 6, 1);
  const std::uint64_t objects = numberAt(bytes, trailer + 8, 8);
  const std::uint64_t table = numberAt(bytes, trailer + 24, 8);
  if (offsetSize < 1 || offsetSize > 8 || table > trailer || objects > (trailer - table) / offsetSize) {
    return false;
  }
  std::uint64_t nodes = 1;  // each may hold a copy of the whole list
  for (std::uint64_t object = 0; object < objects; ++object) {
    const std::uint64_t offset = numberAt(bytes, table + object * offsetSize, offsetSize);
    if (offset >= bytes.size()) return false;
    const auto entries = entriesAt(bytes, offset);
    if (!entries) return false;
    nodes *= *entries + 1;
    if (nodes > mostUnfoldedBytes / bytes.size()) return false;
  }
  return true;
}

// Tags nest, and each entity moves all of its text that follows it.
bool isHarmlessXml(std::string_view bytes) {
  return std::count_if(bytes.begin(), bytes.end(), [](char c) { return c == '<' || c == '&'; }) <= mostMarks;
}

}  // namespace

bool isBinaryPropertyList(std::string_view bytes) { return bytes.starts_with(binaryMagic); }

bool isXmlPropertyList(std::string_view bytes) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(byteOrderMark)) bytes.remove_prefix(byteOrderMark.size());
  const std::size_t start = bytes.find_first_not_of(" \t\r\n");
  return start != std::string_view::npos && bytes[start] == '<';
}

bool isHarmlessPropertyList(std::string_view bytes) {
  if (bytes.size() > largestPropertyList) return false;
  if (isBinaryPropertyList(bytes)) return isHarmlessBinary(bytes);
  return isXmlPropertyList(bytes) && isHarmlessXml(bytes);
}

}  // namespace tarnwick
