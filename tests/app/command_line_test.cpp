#include "app/command_line.h"

#include <gtest/gtest.h>

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
      {{"--print=x"}, Mode::application},
      {{"--exercise"}, Mode::application},
  };
  for (const auto& [words, mode] : cases) {
    EXPECT_EQ(parseCommandLine(words).mode, mode) << testing::PrintToString(words);
  }
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

}  // namespace
}  // namespace tarnwick
