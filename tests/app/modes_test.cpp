#include "app/cli/command_line.h"
#include "app/cli/terminal_text.h"
#include "app/program/bench_mode.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

TEST(CommandLine, TheFirstModeInTheFixedOrderWins) {
  const std::pair<std::vector<std::string>, Mode> cases[] = {
      {{}, Mode::application},
      {{"--print", "--bench", "--demo", "--selftest"}, Mode::selfTest},
      {{"--demo", "--explain", "text"}, Mode::explain},
      {{"--bench", "--demo"}, Mode::demo},
      {{"--print", "--bench"}, Mode::bench},
      {{"--snapshot", "x.png", "--help"}, Mode::snapshot},
      {{"--snapshot"}, Mode::application},
      {{"--snapshot", "x.png", "--print"}, Mode::print},
      {{"--version", "--snapshot"}, Mode::version},
      {{"--version", "--help"}, Mode::help},
      {{"--PRINT"}, Mode::application},
      {{"-h", "-V"}, Mode::help},
      {{"-V", "--demo"}, Mode::demo},
      {{"-V", "--scenario"}, Mode::version},
      {{"-hV"}, Mode::application},
  };
  for (const auto& [words, mode] : cases)
    EXPECT_EQ(parseCommandLine(words).mode, mode) << testing::PrintToString(words);
}

TEST(CommandLine, ValuesAreTheVeryNextWordOfTheFirstOccurrence) {
  EXPECT_EQ(parseCommandLine({"--demo", "--scenario"}).scenario, std::nullopt);
  EXPECT_EQ(parseCommandLine({"--scenario", "calm", "--scenario", "memory"}).scenario, "calm");
  EXPECT_EQ(parseCommandLine({"--scenario", "--print"}).scenario, "--print");
  EXPECT_EQ(parseCommandLine({"--scenario", "--print"}).mode, Mode::print)
      << "the word counts for itself too";
  EXPECT_EQ(parseCommandLine({"--scenario", "", "--demo"}).scenario, "");
  EXPECT_EQ(parseCommandLine({"--explain", "--explain", "x"}).evidence, "--explain");

  const CommandLine all = parseCommandLine({"--open", "--dark", "--live", "--ai", "--pr", "--exercise"});
  EXPECT_TRUE(all.open && all.dark && all.live && all.askModel && all.prTitles && all.exercise);
}

TEST(CommandLine, NamesTheWordsThatAreNeitherOptionNorValue) {
  using Words = std::vector<std::string>;
  const std::pair<Words, Words> cases[] = {
      {{"--demo", "--jsn", "foo", ""}, {"--jsn", "foo", ""}},
      {{"--print", "--Ai", "-ai", "--print=yes", "-hV", "-"}, {"--Ai", "-ai", "--print=yes", "-hV", "-"}},
      {{"--scenario", "foo", "bar"}, {"bar"}},
      {{"--explain", "a", "--snapshot", "b"}, {}},
      {{"--demo", "--scenario", "calm", "--scenario", "memory"}, {}},
      {{"--scenario", "--print", "foo"}, {"foo"}},
      {{"--scenario", "--snapshot", "x.png"}, {}},
      {{"foo", "--scenario"}, {"foo"}},
      {{"-h", "-V", "--demo", "--bench", "--selftest", "--ai", "--pr", "--exercise"}, {}},
  };
  for (const auto& [words, unknown] : cases)
    EXPECT_EQ(parseCommandLine(words).unknown, unknown) << testing::PrintToString(words);
}

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

constexpr std::uint64_t mb = 1U << 20U;

struct FakeCost : OwnCost {
  std::uint64_t footprint() override { return (10 + footprintReads++) * mb + mb / 2; }
  std::uint64_t peakFootprint() override { return 99 * mb; }
  double childMilliseconds() override { return childReads++ == 0 ? 100 : 163; }

 private:
  std::uint64_t footprintReads = 0;
  int childReads = 0;
};

// What is printed about five checks with these marks: label, and cost since the mark before.
std::string bench(const std::vector<std::vector<std::pair<const char*, double>>>& marks) {
  double clock = 50;
  BenchMarks benchMarks([&] { return clock; });
  std::size_t check = 0;
  const auto scan = [&](double interval) {
    EXPECT_EQ(interval, 0.5);
    return Snapshot{.cores = static_cast<int>(check)};
  };
  const auto findings = [&](const Snapshot& snapshot) {
    EXPECT_EQ(snapshot.cores, static_cast<int>(check));
    for (const auto& [label, cost] : marks.at(check)) {
      clock += cost;
      benchMarks.mark(label);
    }
    ++check;
    return std::vector<Finding>(1);
  };
  FakeCost cost;
  std::string printed;
  runBench({scan, findings}, benchMarks, cost, [&](std::string_view text) { printed += text; });
  EXPECT_EQ(check, 5U);
  benchMarks.mark("after");
  EXPECT_FALSE(benchMarks.take()) << "the marks are no longer armed";
  return printed;
}

TEST(BenchMode, PrintsMediansByPhaseAndItsOwnCost) {
  // The second check is the first with a phase: "late" is not among its phases, "once" only there.
  EXPECT_EQ(bench({{{"start", 1000}},
                   {{"start", 7}, {"first pass", 4}, {"system and apps", 2.3}, {"once", 3}},
                   {{"start", 7}, {"first pass", 1}, {"system and apps", 1.3}, {"late", 50}},
                   {{"start", 7}, {"first pass", 3}, {"system and apps", 9}},
                   {{"start", 7}, {"first pass", 1200.5}}}),
            "footprint before any check: 10.5 MB\n"
            "footprint after check 1:    11.5 MB\n"
            "median CPU ms per check, by phase:\n"
            "first pass            4.0\n"
            "system and apps       2.3\n"
            "once                  3.0\n"
            "footprint now:       12.5 MB\n"
            "  total               9.3\n"
            "child processes:     12.6 ms per check\n"
            "peak footprint:      99.0 MB\n");
}

}  // namespace
}  // namespace tarnwick
