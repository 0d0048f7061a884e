// Property lists through libplist, which trusts them: a deeply nested list overflows its stack, and in a
// binary list many containers can share one, each of which it would unfold again. So a list is measured
// before it is handed over. Only the two forms that are asked for reach the library.
#include "context/property_list.h"

#include <plist/plist.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "records/utf8.h"

namespace tarnwick {
namespace {

// A device's list is a flat dictionary of a dozen entries.
constexpr std::size_t largestList = 1U << 20U;
constexpr std::size_t mostTags = 2'000;
constexpr std::uint64_t mostBinaryNodes = 1'000'000;

constexpr std::string_view binaryMagic = "bplist00";
constexpr std::size_t trailerBytes = 32;

using List = std::unique_ptr<void, decltype(&plist_free)>;

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
  std::uint64_t nodes = 1;
  for (std::uint64_t object = 0; object < objects; ++object) {
    const std::uint64_t offset = numberAt(bytes, table + object * offsetSize, offsetSize);
    if (offset >= bytes.size()) return false;
    const auto entries = entriesAt(bytes, offset);
    if (!entries) return false;
    nodes *= *entries + 1;
    if (nodes > mostBinaryNodes) return false;
  }
  return true;
}

bool isHarmlessXml(std::string_view bytes) {
  return static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '<')) <= mostTags;
}

// The parsed list; null when it is refused or malformed.
List parsed(std::string_view bytes) {
  plist_t root = nullptr;
  const auto size = static_cast<std::uint32_t>(std::min(bytes.size(), largestList));
  if (bytes.size() > largestList) return {nullptr, &plist_free};
  if (bytes.starts_with(binaryMagic)) {
    if (isHarmlessBinary(bytes)) plist_from_bin(bytes.data(), size, &root);
  } else if (isHarmlessXml(bytes)) {
    plist_from_xml(bytes.data(), size, &root);
  }
  return {root, &plist_free};
}

}  // namespace

std::optional<std::string> propertyListText(const std::string& list, const std::string& key) {
  const List root = parsed(list);
  if (root == nullptr || plist_get_node_type(root.get()) != PLIST_DICT) return std::nullopt;
  const plist_t value = plist_dict_get_item(root.get(), key.c_str());
  if (value == nullptr || plist_get_node_type(value) != PLIST_STRING) return std::nullopt;
  char* text = nullptr;
  plist_get_string_val(value, &text);
  const std::unique_ptr<char, decltype(&std::free)> owned(text, &std::free);
  if (text == nullptr) return std::nullopt;
  return repairUtf8(text);
}

}  // namespace tarnwick
