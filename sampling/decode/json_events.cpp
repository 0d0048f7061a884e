#include "sampling/decode/json_events.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "records/limits.h"

namespace tarnwick {
namespace {

// What the library's parser calls; each answer says whether to go on.
class JsonTeller {
 public:
  using Seen = std::function<bool(JsonPath, const JsonValue&)>;

  explicit JsonTeller(const Seen& seen) : seen_(seen) {}

  bool null() { return tell({}); }
  bool boolean(bool /*value*/) { return tell({}); }
  bool number_integer(std::int64_t number) { return tell({.whole = number}); }
  bool number_unsigned(std::uint64_t number) {
    JsonValue value{.natural = number};
    if (std::in_range<std::int64_t>(number)) value.whole = static_cast<std::int64_t>(number);
    return tell(value);
  }
  bool number_float(double /*number*/, const std::string& /*digits*/) { return tell({}); }
  bool string(const std::string& text) { return tell({.kind = JsonValue::Kind::text, .text = text}); }
  bool binary(const nlohmann::json::binary_t& /*bytes*/) { return false; }  // JSON has none

  bool start_object(std::size_t /*elements*/) { return enter(JsonValue::Kind::object); }
  bool start_array(std::size_t /*elements*/) { return enter(JsonValue::Kind::list); }
  bool key(const std::string& name) {
    if (depth_ <= steps_.size()) steps_[depth_ - 1].key = name;
    return true;
  }
  bool end_object() { return leave(); }
  bool end_array() { return leave(); }

  static bool parse_error(std::size_t /*at*/, const std::string& /*token*/,
                          const nlohmann::json::exception& /*error*/) {
    return false;
  }

 private:
  bool tell(const JsonValue& value) {
    return depth_ > steps_.size() || seen_(JsonPath(steps_.data(), depth_), value);
  }
  bool enter(JsonValue::Kind kind) {
    if (!tell({.kind = kind}) || depth_ == deepestJson) return false;
    if (depth_ < steps_.size()) {
      steps_[depth_].intoList = kind == JsonValue::Kind::list;
      steps_[depth_].key.clear();
    }
    ++depth_;
    return true;
  }
  bool leave() {
    --depth_;
    return true;
  }

  const Seen& seen_;
  std::array<JsonStep, 3> steps_;
  std::size_t depth_ = 0;
};

}  // namespace

bool isAt(JsonPath path, std::initializer_list<std::string_view> keys) {
  return std::equal(
      path.begin(), path.end(), keys.begin(), keys.end(),
      [](const JsonStep& step, std::string_view key) { return !step.intoList && step.key == key; });
}

bool readJson(std::string_view json, const std::function<bool(JsonPath, const JsonValue&)>& seen) {
  JsonTeller teller(seen);
  return nlohmann::json::sax_parse(json, &teller);
}

}  // namespace tarnwick
