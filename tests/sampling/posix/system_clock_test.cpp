#include "sampling/tools/posix/system_clock.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <thread>

#include "sampling/tools/posix/self.h"
#include "tests/support/wait_until.h"

namespace tarnwick {
namespace {

TEST(SystemClock, SignalsDoNotShortenASleep) {
  struct sigaction ignore = {};
  struct sigaction before = {};
  ignore.sa_handler = [](int) {};  // a handler without SA_RESTART makes a sleeping call return early
  ASSERT_EQ(sigaction(SIGUSR1, &ignore, &before), 0);
  SystemClock clock;
  std::atomic<bool> done = false;
  const pthread_t sleeper = pthread_self();
  std::thread disturber([&] {
    while (!done) {
      pthread_kill(sleeper, SIGUSR1);
      usleep(5000);
    }
  });
  const double start = clock.uptime();
  clock.sleep(0.25);
  EXPECT_GE(clock.uptime() - start, 0.25);
  done = true;
  disturber.join();
  sigaction(SIGUSR1, &before, nullptr);
}

TEST(SystemClock, NothingToSleepReturns) {
  SystemClock clock;
  EXPECT_GT(clock.now(), timestamp(1'700'000'000));
  const double start = clock.uptime();
  for (const double seconds : {0.0, -1e300, std::nan("")}) clock.sleep(seconds);
  EXPECT_LT(clock.uptime() - start, 30);
}

TEST(Self, HomeFallsBack) {
  EXPECT_EQ(homeFolder("/home/a//", "/b"), "/home/a");
  EXPECT_EQ(homeFolder("relative", "/b/"), "/b");
  EXPECT_EQ(homeFolder({}, ""), "/");
  EXPECT_EQ(homeFolder("///", "/b"), "/");
}

TEST(Self, KnowsTheProcessAndItsCost) {
  EXPECT_EQ(readSelf().pid, getpid());
  EXPECT_TRUE(readSelf().home.starts_with('/'));
  const double before = processorMilliseconds();
  EXPECT_TRUE(waitUntil([&] { return processorMilliseconds() > before + 1; }));
  EXPECT_LT(processorMilliseconds() - before, 60'000);  // milliseconds, not microseconds
}

}  // namespace
}  // namespace tarnwick
