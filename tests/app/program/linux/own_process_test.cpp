#include "app/program/own_process.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

#include "app/program/linux/linux_own_cost.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

constexpr std::size_t mb = 1U << 20U;

TEST(OwnProcess, FootprintFollowsTouchedMemoryAndThePeakStays) {
  LinuxOwnCost cost;
  constexpr std::size_t bytes = 64 * mb;
  const std::uint64_t before = cost.footprint();
  void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(memory, MAP_FAILED);
  EXPECT_LT(cost.footprint(), before + bytes / 2) << "memory that was never touched costs nothing";
  std::memset(memory, 1, bytes);
  EXPECT_GE(cost.footprint(), before + bytes * 9 / 10);
  ::munmap(memory, bytes);
  EXPECT_LT(cost.footprint(), before + bytes / 2);
  EXPECT_GE(cost.peakFootprint(), before + bytes * 9 / 10);
}

TEST(OwnProcess, ChildrenCountOnceTheyHaveEnded) {
  LinuxOwnCost cost;
  const double before = cost.childMilliseconds();
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    while (::clock() < CLOCKS_PER_SEC / 20) {
    }
    ::_exit(0);
  }
  EXPECT_EQ(cost.childMilliseconds(), before);
  EXPECT_EQ(::waitpid(child, nullptr, 0), child);
  EXPECT_GE(cost.childMilliseconds(), before + 20);
}

TEST(OwnProcess, ItsPathStartsTheSameProgram) {
  const auto path = ownExecutable();
  ASSERT_TRUE(path);
  PosixToolRunner tools;
  const std::string output = ToolRunner::finish(tools.start(*path, {"--gtest_list_tests"}));
  EXPECT_THAT(output, HasSubstr("ItsPathStartsTheSameProgram"));
}

}  // namespace
}  // namespace tarnwick
