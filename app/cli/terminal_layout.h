// A report as a terminal shows it: its own words, in lines that fit, with colour where the reader wants it.
// Pure functions.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// How the terminal is, and what its reader wants.
struct TerminalLook {
  std::optional<std::size_t> columns;  // absent: nobody knows, and lines stay as long as they are
  bool colour = false;
};

// What the environment says about colour: `noColour` (NO_COLOR) and `terminal` (TERM), absent where not set.
bool wantsColour(const std::optional<std::string>& noColour, const std::optional<std::string>& terminal);

enum class Tint { none, heading, remedy };

struct TintedLine {
  std::string text = {};  // without a line feed
  Tint tint = Tint::none;
  std::size_t tintedFrom = 0;  // the byte where the tint begins; it ends with the line
};

// The lines, each with a line feed, harmless for a terminal. What is longer than the terminal is wide goes on
// in the next line behind the same blanks; lines are broken at blanks alone, so a longer word is left to the
// terminal.
std::string laidOut(const std::vector<TintedLine>& lines, const TerminalLook& look);

}  // namespace tarnwick
