// Property lists through libplist, loaded when the first one is asked for.
#include "system/port.h"

#include <plist/plist.h>

#include <cstdint>
#include <memory>
#include <string_view>

#include "context/linux/loaded_library.h"
#include "context/property_list_bounds.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

// The functions that a text of a list takes; some are null where the library is missing.
struct Plist {
  LoadedLibrary library{TARNWICK_PLIST_LIBRARY};
  decltype(plist_from_bin)* fromBinary = library.function<decltype(plist_from_bin)>("plist_from_bin");
  decltype(plist_from_xml)* fromXml = library.function<decltype(plist_from_xml)>("plist_from_xml");
  decltype(plist_get_node_type)* type =
      library.function<decltype(plist_get_node_type)>("plist_get_node_type");
  decltype(plist_dict_get_item)* item =
      library.function<decltype(plist_dict_get_item)>("plist_dict_get_item");
  // Not the one that hands out a copy: that one gives up the program for a text with a zero byte in it.
  decltype(plist_get_string_ptr)* text =
      library.function<decltype(plist_get_string_ptr)>("plist_get_string_ptr");
  decltype(plist_free)* release = library.function<decltype(plist_free)>("plist_free");

  bool isComplete() const {
    return fromBinary != nullptr && fromXml != nullptr && type != nullptr && item != nullptr &&
           text != nullptr && release != nullptr;
  }
};

using List = std::unique_ptr<void, decltype(&plist_free)>;

// The parsed list; null when it is malformed.
List parsed(const Plist& plist, std::string_view bytes) {
  plist_t root = nullptr;
  const auto size = static_cast<std::uint32_t>(bytes.size());
  (isBinaryPropertyList(bytes) ? plist.fromBinary : plist.fromXml)(bytes.data(), size, &root);
  return {root, plist.release};
}

}  // namespace

std::optional<std::string> propertyListText(const std::string& list, const std::string& key) {
  if (!isHarmlessPropertyList(list)) return std::nullopt;
  static const Plist plist;
  if (!plist.isComplete()) return std::nullopt;
  const List root = parsed(plist, list);
  if (root == nullptr || plist.type(root.get()) != PLIST_DICT) return std::nullopt;
  const plist_t value = plist.item(root.get(), key.c_str());
  if (value == nullptr || plist.type(value) != PLIST_STRING) return std::nullopt;
  std::uint64_t length = 0;
  const char* text = plist.text(value, &length);
  if (text == nullptr) return std::nullopt;
  return repairUtf8(std::string_view(text, length));
}

}  // namespace tarnwick
