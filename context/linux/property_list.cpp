// Property lists through libplist.
#include "system/port.h"

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "context/property_list_bounds.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

using List = std::unique_ptr<void, decltype(&plist_free)>;

// The parsed list; null when it is refused or malformed.
List parsed(std::string_view bytes) {
  plist_t root = nullptr;
  if (!isHarmlessPropertyList(bytes)) return {nullptr, &plist_free};
  const auto size = static_cast<std::uint32_t>(bytes.size());
  if (isBinaryPropertyList(bytes)) {
    plist_from_bin(bytes.data(), size, &root);
  } else {
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
