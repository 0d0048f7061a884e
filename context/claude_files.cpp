#include "context/claude_files.h"

#include <date/date.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

namespace tarnwick {
namespace {

constexpr std::string_view digits = "0123456789";

// Is the text of this form? "0" stands for any digit, every other character for itself.
bool hasForm(std::string_view text, std::string_view form) {
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char actual, char expected) {
    return expected == '0' ? digits.find(actual) != std::string_view::npos : actual == expected;
  });
}

// Takes a decimal fraction such as ".345" off the front, however long; 0 when there is none. Absent for a
// mark without digits.
std::optional<double> takeFraction(std::string_view& text) {
  if (!text.starts_with('.') && !text.starts_with(',')) return 0;
  const std::size_t end = std::min(text.find_first_not_of(digits, 1), text.size());
  if (end == 1) return std::nullopt;
  double value = 0;
  double place = 0.1;
  for (const char digit : text.substr(1, end - 1)) {
    value += place * static_cast<double>(digit - '0');
    place /= 10;
  }
  text.remove_prefix(end);
  return value;
}

// The zone in the one form that the calendar library reads strictly; absent when it is none.
std::optional<std::string> zoneOffset(std::string_view zone) {
  if (zone == "Z") return "+00:00";
  if (!zone.starts_with('+') && !zone.starts_with('-')) return std::nullopt;
  const std::string_view offset = zone.substr(1);
  std::string minutes = "00";
  if (hasForm(offset, "00:00")) {
    minutes = offset.substr(3);
  } else if (hasForm(offset, "0000")) {
    minutes = offset.substr(2);
  } else if (!hasForm(offset, "00")) {
    return std::nullopt;
  }
  const std::string hours(offset.substr(0, 2));
  if (hours > "23" || minutes > "59") return std::nullopt;
  return zone.front() + hours + ":" + minutes;
}

}  // namespace

std::optional<nlohmann::json> jsonObject(std::string_view text) {
  nlohmann::json value = nlohmann::json::parse(text, nullptr, false);
  if (!value.is_object()) return std::nullopt;
  return value;
}

std::optional<nlohmann::json> newest(std::string_view bytes, std::string_view type, std::string_view key) {
  const std::string marker = "\"type\":\"" + std::string(type) + "\"";
  const std::size_t at = bytes.rfind(marker);
  if (at == std::string_view::npos) return std::nullopt;
  const std::size_t before = bytes.rfind('\n', at);
  const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
  const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
  auto line = jsonObject(bytes.substr(start, end - start));
  if (line && !line->contains(key)) return std::nullopt;
  return line;
}

std::optional<Timestamp> isoTime(std::string_view text) {
  constexpr std::string_view form = "0000-00-00T00:00:00";
  const std::string_view wholeSeconds = text.substr(0, form.size());
  if (!hasForm(wholeSeconds, form)) return std::nullopt;
  text.remove_prefix(form.size());
  const std::optional<double> fraction = takeFraction(text);
  const std::optional<std::string> offset = zoneOffset(text);
  if (!fraction || !offset) return std::nullopt;

  // Four digits of year and whole seconds cannot overflow; the fraction is added afterwards.
  std::istringstream input(std::string(wholeSeconds) + *offset);
  input.imbue(std::locale::classic());
  date::sys_seconds moment;
  input >> date::parse("%FT%T%Ez", moment);
  if (input.fail()) return std::nullopt;
  return Timestamp{moment} + Seconds{*fraction};
}

}  // namespace tarnwick
