#include "app/cli/command_line.h"

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
  const std::pair<Strings, Strings> cases[] = {
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

}  // namespace
}  // namespace tarnwick
