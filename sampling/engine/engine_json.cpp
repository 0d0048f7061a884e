#include "sampling/engine/engine_json.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "records/limits.h"
#include "records/text.h"
#include "records/utf8.h"
#include "sampling/decode/json_events.h"

namespace tarnwick {
namespace {

constexpr std::size_t idCharacters = 12;  // of the id's 12 to 64
constexpr std::size_t longestId = 64;

// What an engine names its containers by. Anything else would stand in requests, remedies and the report.
bool isEngineId(std::string_view id) {
  return id.size() >= idCharacters && id.size() <= longestId &&
         id.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

// Only what a container's record takes, of the entry that is being read.
struct EngineEntry {
  std::optional<std::string> id;
  std::optional<std::string> name;  // the first of them; an engine gives several when others link to it
  std::string status;
  std::string image;

  // `path` begins at the entry.
  void take(JsonPath path, const JsonValue& value) {
    const bool isText = value.kind == JsonValue::Kind::text;
    const auto text = [&](std::size_t most) { return isText ? repairUtf8(value.text, most) : std::string(); };
    if (isAt(path, {"Id"})) {
      id.reset();
      if (isText && isEngineId(value.text)) id = value.text.substr(0, idCharacters);
    } else if (isAt(path, {"Names"})) {
      name.reset();
    } else if (isAt(path, {"Status"})) {
      status = text(longestContainerText);
    } else if (isAt(path, {"Image"})) {
      image = text(longestImage);
    } else if (isText && !name && path.size() == 2 && path[0].key == "Names" && path[1].intoList) {
      name = repairUtf8(trimmed(value.text, "/"), longestContainerText);
    }
  }

  std::optional<Container> container() {
    if (!id) return std::nullopt;
    std::string shown = name ? std::move(*name) : *id;
    return Container{std::move(*id), std::move(shown), std::move(status), std::move(image)};
  }
};

// Gathers the containers of a list while it is read.
class EngineList {
 public:
  bool take(JsonPath path, const JsonValue& value) {
    if (path.empty()) return value.kind == JsonValue::Kind::list;
    if (path.size() > 1) {
      entry_.take(path.subspan(1), value);
      return true;
    }
    finishEntry();
    return value.kind == JsonValue::Kind::object;
  }

  std::vector<Container> all() {
    finishEntry();
    return std::move(containers_);
  }

 private:
  void finishEntry() {
    auto container = std::exchange(entry_, {}).container();
    if (container && containers_.size() < mostContainers) containers_.push_back(std::move(*container));
  }

  EngineEntry entry_;
  std::vector<Container> containers_;
};

bool isLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

}  // namespace

// A reply is repaired before it is read: one bad byte in one name would cost the whole list otherwise.
std::vector<Container> containersOf(std::string_view body) {
  EngineList list;
  const auto take = [&](JsonPath path, const JsonValue& value) { return list.take(path, value); };
  return readJson(repairUtf8(body), take) ? list.all() : std::vector<Container>();
}

std::uint64_t memoryOf(std::string_view body) {
  std::uint64_t usage = 0;
  // Engines on the older kind of control groups may have only the second figure.
  std::optional<std::uint64_t> inactive;
  std::optional<std::uint64_t> totalInactive;
  const bool whole = readJson(repairUtf8(body), [&](JsonPath path, const JsonValue& value) {
    const std::uint64_t bytes = believed(value.natural.value_or(0));
    if (isAt(path, {"memory_stats"})) usage = 0;
    if (isAt(path, {"memory_stats"}) || isAt(path, {"memory_stats", "stats"})) {
      inactive.reset();
      totalInactive.reset();
    }
    if (isAt(path, {"memory_stats", "usage"})) usage = bytes;
    if (isAt(path, {"memory_stats", "stats", "inactive_file"})) inactive = bytes;
    if (isAt(path, {"memory_stats", "stats", "total_inactive_file"})) totalInactive = bytes;
    return true;
  });
  if (!whole) return 0;
  const std::uint64_t droppable = inactive.value_or(totalInactive.value_or(0));
  return droppable < usage ? usage - droppable : usage;
}

bool isPlainContainerId(std::string_view id) {
  return !id.empty() && isLetterOrDigit(id.front()) && std::all_of(id.begin(), id.end(), [](char c) {
    return isLetterOrDigit(c) || c == '_' || c == '.' || c == '-';
  });
}

}  // namespace tarnwick
