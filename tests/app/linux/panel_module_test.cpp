// What the program says where the panel's module is missing or broken: it is copied away from its own.

#include "sampling/tools/posix/posix_tool_runner.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

struct PanelModule : testing::Test {
  PanelModule() {
    std::filesystem::create_directory(folder.at("bin"));
    std::filesystem::copy_file(TARNWICK_PROGRAM, folder.at("bin/tarnwick"));
  }

  // What the program writes to both outputs when it is given these words, and its exit status in a last line.
  std::string run(const Strings& words) {
    Strings line{"-c", "\"$0\" \"$@\" 2>&1; echo status $?", folder.at("bin/tarnwick")};
    line.insert(line.end(), words.begin(), words.end());
    return ToolRunner::finish(PosixToolRunner().start("/bin/sh", line));
  }

  TempFolder folder;
  std::string picture = folder.at("x.png");
};

TEST_F(PanelModule, MissingOneIsNamedByPackageAndTarget) {
  const std::string missing =
      "tarnwick: The panel is not installed: the package tarnwick-panel brings it, or “make tray” in a source tree.";
  EXPECT_EQ(run({"--snapshot", picture}), missing + "\nstatus 0\n");
  EXPECT_FALSE(std::filesystem::exists(picture));
  EXPECT_EQ(run({}), missing + " Try --print.\nstatus 1\n");
}

TEST_F(PanelModule, BrokenOneIsSaidToBeBroken) {
  for (const char* place : {TARNWICK_MODULE_DIR "/libtarnwick_panel.so", "bin/libtarnwick_panel.so"}) {
    const std::string module = folder.write(place, "no module");
    EXPECT_EQ(run({"--snapshot", picture}),
              "tarnwick: The panel's module cannot be loaded: " + module + ": file too short.\nstatus 0\n");
  }
}

}  // namespace
}  // namespace tarnwick
