// The program on machines whose /proc shows too little, each in mounts of its own.
#include <unistd.h>

#include "sampling/tools/posix/posix_tool_runner.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

TEST(UnseenMachine, IsSaidAndNotJudged) {
  if (::geteuid() != 0) GTEST_SKIP() << "mounting takes root";
  const std::string unseen =
      "tarnwick: this machine cannot be seen: its processes or its memory cannot be read. On Linux they are in "
      "/proc.\nstatus 1\n";
  const std::string proc = "mount -t proc -o ";
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"no /proc", "mount -t tmpfs none /proc", unseen},
      {"processes without a machine", proc + "subset=pid none /proc", unseen},
      {"only what is one's own", proc + "hidepid=2 none /proc", "status 0\n"},
      {"everything", "true", "status 0\n"}};
  for (const auto& [what, mount, expected] : cases) {
    PosixToolRunner runner;
    const std::string line = "unshare --mount sh -c '" + mount +
                             " || exit 77; \"$0\" --print 2>&1 >/dev/null; echo status $?' '" TARNWICK_PROGRAM
                             "'";
    const ToolResult result = runner.start("/bin/sh", {"-c", line}, {.seconds = 60})->result();
    if (result.exitStatus == 77) GTEST_SKIP() << what << " cannot be mounted here";
    EXPECT_EQ(result.output, expected) << what;
  }
}

}  // namespace
}  // namespace tarnwick
