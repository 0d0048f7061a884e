// What the program says where the panel's module is missing or broken: it is copied away from its own.

#include "sampling/tools/posix/posix_tool_runner.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

// What `tarnwick words` writes to both outputs, and its exit status in a last line.
std::string runCopy(const TempFolder& folder, const std::string& words) {
  const std::string program = folder.at("bin/tarnwick");
  PosixToolRunner runner;
  const auto tool = runner.start("/bin/sh", {"-c", program + " " + words + " 2>&1; echo status $?"});
  return tool == nullptr ? "the shell did not start" : tool->result().output;
}

TEST(PanelModule, MissingOneIsNamedByPackageAndTarget) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.at("bin"));
  std::filesystem::copy_file(TARNWICK_PROGRAM, folder.at("bin/tarnwick"));
  const std::string missing =
      "tarnwick: The panel is not installed: the package tarnwick-panel brings it, or “make tray” in a source tree.";
  const std::string picture = folder.at("x.png");
  EXPECT_EQ(runCopy(folder, "--snapshot " + picture), missing + "\nstatus 0\n");
  EXPECT_FALSE(std::filesystem::exists(picture));
  EXPECT_EQ(runCopy(folder, ""), missing + " Try --print.\nstatus 1\n");
}

TEST(PanelModule, BrokenOneIsSaidToBeBroken) {
  for (const char* place : {"bin/libtarnwick_panel.so", TARNWICK_MODULE_DIR "/libtarnwick_panel.so"}) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.at("bin"));
    std::filesystem::copy_file(TARNWICK_PROGRAM, folder.at("bin/tarnwick"));
    const std::string module = folder.write(place, "no module");
    EXPECT_EQ(runCopy(folder, "--snapshot " + folder.at("x.png")),
              "tarnwick: The panel's module cannot be loaded: " + module + ": file too short.\nstatus 0\n");
  }
}

}  // namespace
}  // namespace tarnwick
