// Foreign text (names, arguments, branches) may carry control characters that make a terminal do things.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// A text as a terminal may have it: control characters other than the line feed, and the characters
// that reorder the text around them, are shown as visible signs ("␛") or as their code ("<U+202E>").
std::string harmlessForTerminal(std::string_view bytes);

// The same of a text that must stay within its line: each run of line ends becomes one blank.
std::string harmlessInLine(std::string_view bytes);

// A text as the clipboard may have it, from where it may be pasted into a terminal: the same, but direction
// marks stay. They move only signs beside them, and some applications bear one in their name.
std::string harmlessForClipboard(std::string_view bytes);

}  // namespace tarnwick
