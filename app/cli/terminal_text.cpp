#include "app/cli/terminal_text.h"

#include <utf8cpp/utf8.h>

#include <cstdint>
#include <iterator>

#include "records/formatted.h"
#include "records/one_line.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

constexpr std::uint32_t escapeToPicture = 0x2400;  // "Control Pictures": U+2400 shows U+0000
constexpr std::uint32_t deletePicture = 0x2421;

bool isC1Control(std::uint32_t c) { return c >= 0x80 && c <= 0x9F; }

enum class DirectionMarks { shown, kept };

bool isDirectionMark(std::uint32_t c) { return c == 0x061C || c == 0x200E || c == 0x200F; }

// Embeddings, overrides and isolates that change the direction of what follows.
bool reordersText(std::uint32_t c) { return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069); }

// Line and paragraph separators, which some terminals take for line breaks.
bool breaksLine(std::uint32_t c) { return c == 0x2028 || c == 0x2029; }

std::string harmless(std::string_view bytes, DirectionMarks marks) {
  const std::string text = repairUtf8(bytes);
  std::string result;
  result.reserve(text.size());
  const auto out = std::back_inserter(result);
  for (auto at = text.begin(); at != text.end();) {
    const std::uint32_t c = utf8::unchecked::next(at);
    if (c == '\n') {
      result += '\n';
    } else if (c < 0x20) {
      utf8::append(c + escapeToPicture, out);
    } else if (c == 0x7F) {
      utf8::append(deletePicture, out);
    } else if (isC1Control(c) || reordersText(c) || breaksLine(c) ||
               (isDirectionMark(c) && marks == DirectionMarks::shown)) {
      appendFormatted(result, "<U+{:04X}>", c);
    } else {
      utf8::append(c, out);
    }
  }
  return result;
}

}  // namespace

std::string harmlessForTerminal(std::string_view bytes) { return harmless(bytes, DirectionMarks::shown); }

std::string harmlessInLine(std::string_view bytes) { return harmlessForTerminal(oneLine(repairUtf8(bytes))); }

std::string harmlessForClipboard(std::string_view bytes) { return harmless(bytes, DirectionMarks::kept); }

}  // namespace tarnwick
