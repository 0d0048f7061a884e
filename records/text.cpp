#include "records/text.h"

namespace tarnwick {

std::string_view trimmed(std::string_view text, std::string_view dropped) {
  const std::size_t first = text.find_first_not_of(dropped);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(dropped) - first + 1);
}

std::optional<std::string_view> lineOf(std::string_view text, std::string_view key) {
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    if (takeWord(line) == key) return line;
  }
  return std::nullopt;
}

bool isPlainFileName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos &&
         name.find('\0') == std::string_view::npos;
}

}  // namespace tarnwick
