#include "records/one_line.h"

#include <cstddef>

namespace tarnwick {
namespace {

// The bytes of the line end that the text begins with; 0 when it begins with anything else.
std::size_t lineEndBytes(std::string_view text) {
  if (text.front() >= '\n' && text.front() <= '\r') return 1;
  for (const std::string_view end : {"\u0085", "\u2028", "\u2029"}) {
    if (text.starts_with(end)) return end.size();
  }
  return 0;
}

}  // namespace

std::string oneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  bool afterEnd = false;
  while (!text.empty()) {
    const std::size_t end = lineEndBytes(text);
    if (end == 0) {
      line += text.front();
    } else if (!afterEnd) {
      line += ' ';
    }
    afterEnd = end != 0;
    text.remove_prefix(afterEnd ? end : 1);
  }
  return line;
}

}  // namespace tarnwick
