#include "app/cli/terminal_text.h"

#include "tests/support/testing.h"

namespace tarnwick {
namespace {

TEST(TerminalText, WhatControlsATerminalIsMadeVisible) {
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {"plain text and line feeds stay", "a\nb “ü” 😀\n", "a\nb “ü” 😀\n"},
      {"an escape sequence", "\x1B[2Jx", "␛[2Jx"},
      {"tab, return, bell, backspace", "\t\r\a\b", "␉␍␇␈"},
      {"zero and delete", std::string("\0\x7F", 2), "␀␡"},
      {"the 8-bit control sequence introducer", "a\u009B31m", "a<U+009B>31m"},
      {"direction marks", "\u061C\u200E\u200F", "<U+061C><U+200E><U+200F>"},
      {"embeddings and overrides", "\u202A\u202B\u202C\u202D\u202E",
       "<U+202A><U+202B><U+202C><U+202D><U+202E>"},
      {"isolates", "\u2066\u2067\u2068\u2069", "<U+2066><U+2067><U+2068><U+2069>"},
      {"line and paragraph separator", "a\u2028\u2029b", "a<U+2028><U+2029>b"},
      {"neighbours of the ranges stay", "\u00A0\u061B\u061D\u200D\u2010\u2027\u202F\u2065\u206A ~",
       "\u00A0\u061B\u061D\u200D\u2010\u2027\u202F\u2065\u206A ~"},
      {"invalid bytes", "a\x9B\xFFz", "a\uFFFD\uFFFDz"},
  };
  for (const auto& [what, text, harmless] : cases) EXPECT_EQ(harmlessForTerminal(text), harmless) << what;
}

}  // namespace
}  // namespace tarnwick
