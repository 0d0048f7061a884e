#include "sampling/engine/engine_json.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "records/text.h"
#include "records/utf8.h"
#include "sampling/decode/json_members.h"

namespace tarnwick {
namespace {

using Json = nlohmann::json;

constexpr std::size_t idCharacters = 12;  // of the id's 12 to 64
constexpr std::size_t longestId = 64;
constexpr std::uint64_t mostBytes = std::uint64_t{1} << 60U;

// Repaired before it is parsed: one bad byte in one name would cost the whole list otherwise.
Json parse(std::string_view body) { return Json::parse(repairUtf8(body), nullptr, false); }

std::string textOr(const Json* value, std::string otherwise) {
  return value != nullptr && value->is_string() ? value->get<std::string>() : std::move(otherwise);
}

std::uint64_t bytesOrZero(const Json* value) {
  if (value == nullptr || !value->is_number_unsigned()) return 0;
  const auto bytes = value->get<std::uint64_t>();
  return bytes > mostBytes ? 0 : bytes;
}

// The first text in the list of names; an engine gives a container several when others link to it.
const Json* firstName(const Json& object) {
  const Json* names = jsonMember(&object, "Names");
  if (names == nullptr || !names->is_array()) return nullptr;
  const auto found = std::find_if(names->begin(), names->end(), [](const Json& n) { return n.is_string(); });
  return found == names->end() ? nullptr : &*found;
}

// What an engine names its containers by. Anything else would stand in requests, remedies and the report.
bool isEngineId(std::string_view id) {
  return id.size() >= idCharacters && id.size() <= longestId &&
         id.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

std::optional<Container> containerOf(const Json& object) {
  const std::string id = textOr(jsonMember(&object, "Id"), "");
  if (!isEngineId(id)) return std::nullopt;
  Container container;
  container.id = id.substr(0, idCharacters);
  container.name = std::string(trimmed(textOr(firstName(object), container.id), "/"));
  container.status = textOr(jsonMember(&object, "Status"), "");
  container.image = textOr(jsonMember(&object, "Image"), "");
  return container;
}

bool isLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

}  // namespace

std::vector<Container> containersOf(std::string_view body) {
  const Json list = parse(body);
  if (!list.is_array()) return {};
  std::vector<Container> containers;
  for (const Json& entry : list) {
    if (!entry.is_object()) return {};
    if (std::optional<Container> container = containerOf(entry)) {
      containers.push_back(std::move(*container));
    }
  }
  return containers;
}

std::uint64_t memoryOf(std::string_view body) {
  const Json statistics = parse(body);
  const Json* memory = jsonMember(&statistics, "memory_stats");
  const std::uint64_t usage = bytesOrZero(jsonMember(memory, "usage"));
  const Json* details = jsonMember(memory, "stats");
  // Engines on the older kind of control groups may have only the second figure.
  const Json* inactive = jsonMember(details, "inactive_file");
  if (inactive == nullptr) inactive = jsonMember(details, "total_inactive_file");
  const std::uint64_t droppable = bytesOrZero(inactive);
  return droppable < usage ? usage - droppable : usage;
}

bool isPlainContainerId(std::string_view id) {
  return !id.empty() && isLetterOrDigit(id.front()) && std::all_of(id.begin(), id.end(), [](char c) {
    return isLetterOrDigit(c) || c == '_' || c == '.' || c == '-';
  });
}

}  // namespace tarnwick
