#include "app/cli/command_line.h"

#include <iterator>

#include "app/cli/terminal_text.h"
#include "tests/support/testing.h"

namespace {

TEST(CommandLine, TheFirstModeInTheFixedOrderWins) {
  const std::pair<Mode, std::vector<Strings>> cases[] = {
      {Mode::application, {{}, {"--snapshot"}, {"--PRINT"}, {"-hV"}}},
      {Mode::selfTest, {{"--print", "--bench", "--demo", "--selftest"}}},
      {Mode::explain, {{"--demo", "--explain", "text"}}},
      {Mode::demo, {{"--bench", "--demo"}, {"-V", "--demo"}}},
      {Mode::bench, {{"--print", "--bench"}}},
      {Mode::print, {{"--snapshot", "x.png", "--print"}, {"--top", "--print"}, {"--json"}}},
      {Mode::top, {{"--top"}, {"--snapshot", "x.png", "--top", "3"}, {"--json", "--top"}}},
      {Mode::snapshot, {{"--snapshot", "x.png", "--help"}}},
      {Mode::help, {{"--version", "--help"}, {"-h", "-V"}}},
      {Mode::version, {{"--version", "--snapshot"}, {"-V", "--scenario"}, {"--fix", "-V"}}},
      {Mode::fix, {{"--watch", "--fix"}, {"--yes", "--fix"}}},
      {Mode::watch, {{"--watch"}, {"--watch", "5"}}}};
  for (const auto& [mode, lines] : cases)
    for (const Strings& words : lines)
      EXPECT_EQ(parseCommandLine(words).mode, mode) << testing::PrintToString(words);
}

TEST(CommandLine, ValuesAreTheVeryNextWordOfTheFirstOccurrence) {
  const std::pair<Strings, Text> cases[] = {{{"--demo", "--scenario"}, {}},
                                            {{"--scenario", "calm", "--scenario", "memory"}, "calm"},
                                            {{"--scenario", "--print"}, "--print"},
                                            {{"--scenario", "", "--demo"}, ""}};
  for (const auto& [words, scenario] : cases) EXPECT_EQ(parseCommandLine(words).scenario, scenario);
  EXPECT_EQ(parseCommandLine({"--scenario", "--print"}).mode, Mode::print) << "the word is one itself too";
  EXPECT_EQ(parseCommandLine({"--explain", "--explain", "x"}).evidence, "--explain");

  // A value that may be left out is no option's word.
  for (const char* word : {"--yes", "--what", "-h"})
    EXPECT_EQ(parseCommandLine({"--fix", word}).fixCommand, std::nullopt) << word;
  for (const char* word : {"", "-", "-5", "kill -TERM 41"})
    EXPECT_EQ(parseCommandLine({"--watch", "--fix", word, "--yes"}).fixCommand, word);

  const CommandLine all =
      parseCommandLine({"--open", "--dark", "--live", "--ai", "--pr", "--exercise", "--json", "--top"});
  EXPECT_TRUE(all.json && all.top && all.open && all.dark && all.live && all.askModel && all.prTitles &&
              all.exercise);
}

TEST(CommandLine, NamesTheWordsThatAreNeitherOptionNorValue) {
  const std::pair<Strings, Strings> cases[] = {
      {{"--demo", "--jsn", "foo", ""}, {"--jsn", "foo", ""}},
      {{"--print", "--Ai", "-ai", "--print=yes", "-hV", "-"}, {"--Ai", "-ai", "--print=yes", "-hV", "-"}},
      {{"--scenario", "foo", "bar"}, {"bar"}},
      {{"--explain", "a", "--snapshot", "b"}, {}},
      {{"--demo", "--scenario", "calm", "--scenario", "memory"}, {}},
      {{"--scenario", "--snapshot", "x.png"}, {}},
      {{"foo", "--scenario"}, {"foo"}},
      {{"--fix", "a", "b", "--watch", "--soon", "5"}, {"b", "--soon", "5"}},
      {{"-h", "-V", "--demo", "--bench", "--selftest", "--ai", "--pr", "--exercise"}, {}}};
  for (const auto& [words, unknown] : cases)
    EXPECT_EQ(parseCommandLine(words).unknown, unknown) << testing::PrintToString(words);
}

TEST(CommandLine, SaysWhatIsWrongWithWordsThatCannotBeCarriedOut) {
  const auto wrong = [](const std::string& line) {
    std::istringstream words(line);
    return wrongWords(parseCommandLine({std::istream_iterator<std::string>(words), {}}));
  };
  for (const char* fine : {"--top", "--top --json", "--json --ai", "--demo --json --top 100", "--top 1"})
    EXPECT_EQ(wrong(fine), std::nullopt) << fine;
  for (const char* other : {"--json --snapshot x.png", "--json --help", "--json --explain x", "--fix --json"})
    EXPECT_EQ(wrong(other), "--json goes with --print, --demo, --top or --watch, or stands alone.") << other;
  const std::string rows = "” is no number of rows for --top. Use 1 to 100.";
  for (const std::string value : {"0", "101", "99999999999999999999", "-3", ""})
    EXPECT_EQ(wrongWords(parseCommandLine({"--top", value})), "“" + value + rows);
  EXPECT_EQ(wrongWords(parseCommandLine({"--demo", "--top", "a\x1B\n"})), "“a␛ " + rows);
  EXPECT_EQ(rowsOf(parseCommandLine({"--json"})), 10U);
  EXPECT_EQ(rowsOf(parseCommandLine({"--top", "7"})), 7U);
}

TEST(TerminalText, WhatControlsATerminalIsMadeVisible) {
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {"plain text and line feeds stay", "a\nb “ü” 😀\n", "a\nb “ü” 😀\n"},
      {"what has a sign of its own", std::string("\x1B\t\r\a\b\0\x7F", 7), "␛␉␍␇␈␀␡"},
      {"the 8-bit control sequence introducer", "a\u009B31m", "a<U+009B>31m"},
      {"direction marks, embeddings, overrides, isolates, line and paragraph separators",
       "\u061C\u200E\u200F\u2028\u2029\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069",
       "<U+061C><U+200E><U+200F><U+2028><U+2029><U+202A><U+202B><U+202C><U+202D><U+202E><U+2066><U+2067><U+2068><U+2069>"},
      {"neighbours of the ranges stay", "\u00A0\u061B\u061D\u200D\u2010\u2027\u202F\u2065\u206A ~",
       "\u00A0\u061B\u061D\u200D\u2010\u2027\u202F\u2065\u206A ~"},
      {"invalid bytes", "a\x9B\xFFz", "a\uFFFD\uFFFDz"}};
  for (const auto& [what, text, harmless] : cases) EXPECT_EQ(harmlessForTerminal(text), harmless) << what;
  EXPECT_EQ(harmlessForClipboard("\x1B\r\n\u2067\u200E\u061C"), "␛␍\n<U+2067>\u200E\u061C");
}

}  // namespace
