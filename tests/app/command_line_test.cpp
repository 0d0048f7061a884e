#include "app/command_line.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using Words = std::vector<std::string>;

TEST(CommandLine, TheFirstModeInTheFixedOrderWins) {
  const struct {
    Words words;
    Mode mode;
  } cases[] = {
      {{}, Mode::application},
      {{"--print", "--bench", "--demo", "--selftest"}, Mode::selfTest},
      {{"--explain", "--selftest"}, Mode::selfTest},
      {{"--demo", "--explain", "text"}, Mode::explain},
      {{"--demo", "--explain"}, Mode::demo},
      {{"--explain"}, Mode::application},
      {{"--bench", "--demo"}, Mode::demo},
      {{"--print", "--bench"}, Mode::bench},
      {{"--snapshot", "x.png", "--print"}, Mode::print},
      {{"--snapshot", "x.png", "--help"}, Mode::snapshot},
      {{"--snapshot"}, Mode::application},
      {{"--version", "--snapshot"}, Mode::version},
      {{"--version", "--help"}, Mode::help},
      {{"--explain", "--help"}, Mode::explain},
      {{"--PRINT"}, Mode::application},
      {{"--print=x"}, Mode::application},
      {{"print", "-print", ""}, Mode::application},
      {{"--exercise"}, Mode::application},
      {{"--ai"}, Mode::application},
  };
  for (const auto& [words, mode] : cases) {
    EXPECT_EQ(parseCommandLine(words).mode, mode) << testing::PrintToString(words);
  }
}

TEST(CommandLine, ValuesAreTheVeryNextWordOfTheFirstOccurrence) {
  EXPECT_EQ(parseCommandLine({"--demo"}).scenario, std::nullopt);
  EXPECT_EQ(parseCommandLine({"--demo", "--scenario"}).scenario, std::nullopt);
  EXPECT_EQ(parseCommandLine({"--scenario", "calm", "--scenario", "memory"}).scenario, "calm");
  EXPECT_EQ(parseCommandLine({"--scenario", "--print"}).scenario, "--print");
  EXPECT_EQ(parseCommandLine({"--scenario", "--print"}).mode, Mode::print)
      << "the word counts for itself too";
  EXPECT_EQ(parseCommandLine({"--scenario", "", "--demo"}).scenario, "");
  EXPECT_EQ(parseCommandLine({"--explain", "--explain", "x"}).evidence, "--explain");
  EXPECT_EQ(parseCommandLine({"--snapshot", "a b.png", "x"}).imagePath, "a b.png");

  const CommandLine all = parseCommandLine({"--open", "--dark", "--live", "--ai", "--pr", "--exercise"});
  EXPECT_TRUE(all.open && all.dark && all.live && all.askModel && all.prTitles && all.exercise);
  EXPECT_EQ(parseCommandLine({}), CommandLine{});
}

}  // namespace
}  // namespace tarnwick
