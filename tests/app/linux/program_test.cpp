// What the program says where the machine cannot be seen, and where the panel's module is missing or broken.

#include <unistd.h>

#include "sampling/tools/posix/posix_tool_runner.h"
#include "tests/support/testing.h"

namespace {

// A copy of the program, away from its module.
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

// Where /proc shows too little, each time in mounts of its own.
TEST(UnseenMachine, IsSaidAndNotJudged) {
  if (::geteuid() != 0) GTEST_SKIP() << "mounting takes root";
  const std::string unseen =
      "tarnwick: this machine cannot be seen: its processes or its memory cannot be read. On Linux they are in "
      "/proc.\nstatus 1\n";
  const std::string proc = "mount -t proc -o ";
  const std::string closed = "exec 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&-; ";  // what the tests' runner left open
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"no /proc", "mount -t tmpfs none /proc", unseen},
      {"four descriptors", closed + "ulimit -n 4", unseen},
      {"nine descriptors", closed + "ulimit -n 9", unseen},
      {"processes without a machine", proc + "subset=pid none /proc", unseen},
      {"only what is one's own", proc + "hidepid=2 none /proc", "status 0\n"}};
  for (const auto& [what, mount, expected] : cases) {
    PosixToolRunner runner;
    const std::string line =
        "unshare --mount sh -c '" + mount +
        " || exit 77; exec \"$0\" --print' \"$0\" 2>&1 >/dev/null; s=$?; echo status $s; exit $s";
    const ToolResult result =
        runner.start("/bin/sh", {"-c", line, TARNWICK_PROGRAM}, {.seconds = 60})->result();
    if (result.exitStatus == 77) GTEST_SKIP() << what << " cannot be mounted here";
    EXPECT_EQ(result.output, expected) << what;
  }
}

}  // namespace
