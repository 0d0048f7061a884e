// Foreign JSON, told value by value while it is read and never held: what a reply or a settings file costs
// does not grow with what stands in it. Nothing here throws. Pure; any bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

// One value. Objects and lists are told where they begin, before what is in them.
struct JsonValue {
  enum class Kind { object, list, text, other };

  Kind kind = Kind::other;
  std::string_view text;                 // of a text; until the next value
  std::optional<std::int64_t> whole;     // of a whole number that fits
  std::optional<std::uint64_t> natural;  // of a whole number without sign that fits
};

// One step from the top towards a value: into a list, or to the key of an object.
struct JsonStep {
  bool intoList = false;
  std::string key;
};

using JsonPath = std::span<const JsonStep>;

// Does the path lead through objects alone, by these keys?
bool isAt(JsonPath path, std::initializer_list<std::string_view> keys);

// Tells every value that is not deeper than the third level. A key that repeats is told again; the last one
// counts. False, after any number of values, when the text is no JSON, nests deeper than `deepestJson` or
// `seen` wants no more.
bool readJson(std::string_view json, const std::function<bool(JsonPath, const JsonValue&)>& seen);

}  // namespace tarnwick
