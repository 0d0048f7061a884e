#include "sampling/decode/json_members.h"

#include <limits>
#include <nlohmann/json.hpp>

namespace tarnwick {

const nlohmann::json* jsonMember(const nlohmann::json* object, const char* key) {
  if (object == nullptr || !object->is_object()) return nullptr;
  const auto found = object->find(key);
  return found == object->end() ? nullptr : &*found;
}

std::optional<std::string> textMember(const nlohmann::json* object, const char* key) {
  const nlohmann::json* member = jsonMember(object, key);
  if (member == nullptr || !member->is_string()) return std::nullopt;
  return member->get<std::string>();
}

std::optional<std::int64_t> numberMember(const nlohmann::json* object, const char* key) {
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
  const nlohmann::json* member = jsonMember(object, key);
  if (member == nullptr || !member->is_number_integer()) return std::nullopt;
  if (member->is_number_unsigned() && member->get<std::uint64_t>() > most) return std::nullopt;
  return member->get<std::int64_t>();
}

}  // namespace tarnwick
