#include "sampling/decode/memory_saver.h"

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

namespace tarnwick {
namespace {

using Json = nlohmann::json;

// The member of an object; null when there is none or `value` is no object.
const Json* member(const Json* value, const char* key) {
  if (value == nullptr || !value->is_object()) return nullptr;
  const auto found = value->find(key);
  return found == value->end() ? nullptr : &*found;
}

}  // namespace

std::optional<int> memorySaverState(std::string_view localState) {
  const Json root = Json::parse(localState, nullptr, false);
  const Json* state = member(member(member(&root, "performance_tuning"), "high_efficiency_mode"), "state");
  if (state == nullptr || !state->is_number_integer()) return std::nullopt;
  // The library keeps numbers above the signed range as unsigned; asked as signed they would wrap.
  constexpr auto most = std::numeric_limits<int>::max();
  if (state->is_number_unsigned() && state->get<std::uint64_t>() > std::uint64_t{most}) return std::nullopt;
  const auto value = state->get<std::int64_t>();
  if (value < std::numeric_limits<int>::min() || value > most) return std::nullopt;
  return static_cast<int>(value);
}

}  // namespace tarnwick
