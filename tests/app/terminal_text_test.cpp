#include "app/terminal_text.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(TerminalText, WhatControlsATerminalIsMadeVisible) {
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {"plain text and line feeds stay", "a\nb “ü” 😀\n", "a\nb “ü” 😀\n"},
      {"an escape sequence", "\x1B[2Jx", "␛[2Jx"},
      {"tab, return, bell, backspace", "\t\r\a\b", "␉␍␇␈"},
      {"zero and delete", std::string("\0\x7F", 2), "␀␡"},
      {"the 8-bit control sequence introducer", "a\u009B31m", "a<U+009B>31m"},
      {"right-to-left override and isolates", "x\u202Etxt\u2066", "x<U+202E>txt<U+2066>"},
      {"line separator", "a\u2028b", "a<U+2028>b"},
      {"neighbours of the ranges stay", "\u00A0\u202F\u2070 ~", "\u00A0\u202F\u2070 ~"},
      {"invalid bytes", "a\x9B\xFFz", "a\uFFFD\uFFFDz"},
  };
  for (const auto& [what, text, harmless] : cases) EXPECT_EQ(harmlessForTerminal(text), harmless) << what;
}

}  // namespace
}  // namespace tarnwick
