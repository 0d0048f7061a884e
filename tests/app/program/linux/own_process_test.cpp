#include "app/program/own_process.h"

#include <sys/mman.h>

#include <cstring>

#include "app/program/linux/linux_own_cost.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "tests/support/testing.h"

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

TEST(OwnProcess, ItsPathStartsTheSameProgramAndAChildCountsOnceItHasEnded) {
  PosixToolRunner tools;
  auto list = tools.start(ownExecutable().value(), {"--gtest_list_tests"});
  EXPECT_THAT(ToolRunner::finish(std::move(list)), HasSubstr("ItsPathStartsTheSameProgram"));
  LinuxOwnCost cost;
  const double before = cost.childMilliseconds();
  auto busy = tools.start("/bin/sh", {"-c", "i=0; while [ $((i += 1)) -lt 99999 ]; do :; done"});
  EXPECT_EQ(cost.childMilliseconds(), before);
  ToolRunner::finish(std::move(busy));
  EXPECT_GE(cost.childMilliseconds(), before + 10);
}

}  // namespace
