#include "app/cli/terminal_layout.h"

#include "tests/support/testing.h"

namespace {

TEST(TerminalLayout, BreaksLinesAtBlanksAndKeepsTheIndent) {
  const std::tuple<const char*, std::optional<std::size_t>, std::string, std::string> cases[] = {
      {"a width that nobody knows", {}, "  one two", "  one two\n"},
      {"exactly as wide", 9, "  one two", "  one two\n"},
      {"one cell wider", 8, "  one two", "  one\n  two\n"},
      {"more than one row", 10, "    one two three four", "    one\n    two\n    three\n    four\n"},
      {"a word that is too long stays whole", 7, "  a bbbbbbbbb c", "  a\n  bbbbbbbbb\n  c\n"},
      {"an indent wider than the terminal", 1, "    a b", "    a\n    b\n"},
      {"two blanks stay between words and go where a line ends", 8, "a  b  cccc", "a  b\ncccc\n"},
      {"wide characters take two cells", 8, "  漢字 漢", "  漢字\n  漢\n"},
      {"signs stand for control characters, and count", 8, " \x1B[31m a", " ␛[31m a\n"},
      {"a line end is no line end", {}, "  a\n[Stop]", "  a [Stop]\n"},
      {"nothing", 5, "", "\n"},
      {"blanks alone", 2, "    ", "    \n"}};
  for (const auto& [what, columns, line, expected] : cases)
    EXPECT_EQ(laidOut({{.text = line}}, {.columns = columns}), expected) << what;
}

TEST(TerminalLayout, ColoursEachRowForItself) {
  const std::vector<TintedLine> lines{
      {.text = "BUSY NOW", .tint = Tint::heading},
      {.text = "  1. Quit it.  [Quit]  Cmd-Q", .tint = Tint::remedy, .tintedFrom = 15}};
  const std::string plain = "BUSY NOW\n  1. Quit it.  [Quit]\n  Cmd-Q\n";
  EXPECT_EQ(laidOut(lines, {.columns = 21}), plain);
  EXPECT_EQ(laidOut(lines, {.columns = 21, .colour = true}),
            "\x1B[1;36mBUSY NOW\x1B[0m\n  1. Quit it.  \x1B[32m[Quit]\x1B[0m\n  \x1B[32mCmd-Q\x1B[0m\n");
  // With a terminal of the name xterm or dumb, and NO_COLOR unset, empty or not, the program is asked itself.
  const std::tuple<Text, Text, bool> wishes[] = {{{}, "xterm", true}, {{}, "", false}, {{}, {}, false}};
  for (const auto& [noColour, terminal, colour] : wishes)
    EXPECT_EQ(wantsColour(noColour, terminal), colour) << noColour.value_or("-") << terminal.value_or("-");
}

}  // namespace
