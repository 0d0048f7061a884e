#include "app/linux/linux_signals.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "tests/support/linux/found_processes.h"
#include "tests/support/posix/child_process.h"

namespace tarnwick {
namespace {

using Kind = SignalOutcome::Kind;
using Road = LinuxSignals::Road;

constexpr unsigned nobody = 65'534;

class LinuxSignalsTest : public testing::TestWithParam<Road> {
 protected:
  static Signal shifted(Signal signal, double by) {
    signal.started += Seconds{by};
    return signal;
  }

  FoundProcesses found_;
  LinuxSignals signals_{::getuid(), found_.clock(), GetParam()};
};

INSTANTIATE_TEST_SUITE_P(BothRoads, LinuxSignalsTest,
                         testing::Values(Road::handleWherePossible, Road::pidOnly), [](const auto& road) {
                           return road.param == Road::pidOnly ? std::string("PidOnly")
                                                              : std::string("Handle");
                         });

TEST_P(LinuxSignalsTest, ReachesTheProcessThatWasFound) {
  for (const int number : {SIGTERM, SIGKILL}) {
    ChildProcess child;
    EXPECT_EQ(signals_.send(found_.signalTo(child.pid(), number)).kind, Kind::sent);
    EXPECT_EQ(child.endedBy(), number);
  }
}

TEST_P(LinuxSignalsTest, RefusesAnotherStartTime) {
  ChildProcess child;
  const Signal right = found_.signalTo(child.pid());
  for (const double by : {-1.0, 1.0, -0.001}) {
    EXPECT_EQ(signals_.send(shifted(right, by)).kind, Kind::refused) << by;
  }
  EXPECT_EQ(signals_.started(child.pid()), right.started);
  EXPECT_EQ(child.killed(), SIGKILL);
}

TEST_P(LinuxSignalsTest, RefusesWhatHasEnded) {
  ChildProcess child;
  const Signal right = found_.signalTo(child.pid());
  ::kill(child.pid(), SIGKILL);
  child.waitUntilZombie();
  EXPECT_EQ(signals_.send(right).kind, Kind::refused) << "ended, but not reaped";
  EXPECT_EQ(child.endedBy(), SIGKILL);
  EXPECT_EQ(signals_.send(right).kind, Kind::refused) << "gone";
  EXPECT_EQ(signals_.started(right.pid), std::nullopt);
}

TEST_P(LinuxSignalsTest, RefusesAnotherUsersProcess) {
  if (::getuid() != 0) GTEST_SKIP() << "starting a process of another user takes root";
  ChildProcess child([] {
    if (::setuid(nobody) != 0) ::_exit(1);
  });
  EXPECT_EQ(signals_.send(FoundProcesses(nobody).signalTo(child.pid())).kind, Kind::refused);
  EXPECT_EQ(child.killed(), SIGKILL);
}

TEST_P(LinuxSignalsTest, RefusesPidsThatMeanNoSingleProcess) {
  for (const Pid pid : {1, 0, -1, -::getpgrp()})
    EXPECT_EQ(signals_.send({pid, 0, {}}).kind, Kind::refused) << pid;
}

TEST_P(LinuxSignalsTest, TellsInTheSystemsWordsWhySendingFailed) {
  ChildProcess child;
  const SignalOutcome outcome = signals_.send(found_.signalTo(child.pid(), 4711));
  EXPECT_EQ(outcome.kind, Kind::failed);
  EXPECT_EQ(outcome.error, "Invalid argument");
  EXPECT_EQ(child.killed(), SIGKILL);
}

}  // namespace
}  // namespace tarnwick
