#include "sampling/tools/tool_places.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/support/temp_folder.h"

namespace tarnwick {
namespace {

class ToolPlacesTest : public testing::Test {
 protected:
  void SetUp() override { ::unsetenv("TARNWICK_NO_TOOLS"); }
  void TearDown() override { ::unsetenv("TARNWICK_NO_TOOLS"); }

  TempFolder folder_;
};

TEST_F(ToolPlacesTest, TakesTheFirstCandidateThatIsAnExecutableFile) {
  const std::string plain = folder_.write("plain", "no program");
  const std::string directory = folder_.at("directory");
  std::filesystem::create_directory(directory);
  const std::string first = folder_.script("first", "exit 0");
  const std::string second = folder_.script("second", "exit 0");
  const std::string link = folder_.at("link");
  std::filesystem::create_symlink(second, link);

  EXPECT_EQ(executable({}), std::nullopt);
  EXPECT_EQ(executable({plain, directory, first, second}), first);
  EXPECT_EQ(executable({link, first}), link);
}

TEST_F(ToolPlacesTest, LooksOnceAndKeepsTheAnswer) {
  ToolCandidates candidates;
  candidates.git = {folder_.script("git", "exit 0")};
  candidates.gh = {folder_.at("gh")};
  ToolPlaces places(candidates);
  EXPECT_EQ(places.gitBin(), candidates.git.front());
  EXPECT_EQ(places.ghBin(), std::nullopt);
  EXPECT_EQ(places.simctlBin(), std::nullopt);

  folder_.script("gh", "exit 0");
  std::filesystem::remove(candidates.git.front());
  EXPECT_EQ(places.gitBin(), candidates.git.front());
  EXPECT_EQ(places.ghBin(), std::nullopt);
}

TEST_F(ToolPlacesTest, NoToolExistsWhileToolsAreOff) {
  const std::string tool = folder_.script("bin/gh", "exit 0");
  EXPECT_EQ(ToolPlaces(folder_.path()).ghBin(), tool) << "the user's own folder comes first";
  for (const char* value : {"", "0"}) {
    ::setenv("TARNWICK_NO_TOOLS", value, 1);
    EXPECT_EQ(executable({tool}), std::nullopt) << value;
    ToolPlaces places(folder_.path());
    EXPECT_EQ(places.ghBin(), std::nullopt) << value;
  }
}

}  // namespace
}  // namespace tarnwick
