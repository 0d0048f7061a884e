// Remedies while processes come and go under the same pids. TARNWICK_STORM_ROUNDS sets how often.
#include <linux/sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <future>

#include "app/remedies/linux/linux_signals.h"
#include "tests/support/fake_fix_targets.h"
#include "tests/support/linux/found_processes.h"
#include "tests/support/posix/child_process.h"

namespace tarnwick {
namespace {

struct RealSignals final : FakeFixTargets {
  explicit RealSignals(const LinuxSignals& real) : signals(real) {}
  SignalOutcome signal(const Signal& signal) override { return signals.send(signal); }
  const LinuxSignals& signals;
};

// A child with a pid of our choice; -1 when the kernel does not give it.
Pid spawnAs(Pid pid) {
  clone_args arguments{};
  arguments.exit_signal = SIGCHLD;
  arguments.set_tid = reinterpret_cast<std::uint64_t>(&pid);
  arguments.set_tid_size = 1;
  const long child = ::syscall(SYS_clone3, &arguments, sizeof arguments);
  if (child == 0) {
    for (;;) ::pause();
  }
  return static_cast<Pid>(child);
}

bool pidsCanBeChosen() {
  Pid free = 0;
  {
    const ChildProcess child;
    free = child.pid();
  }
  const Pid chosen = spawnAs(free);
  if (chosen == free) ChildProcess::adopt(chosen).killed();
  return chosen == free;
}

struct RemedyStorm : testing::Test {
  struct Round {
    std::unique_ptr<ChildProcess> child;
    Signal finding;
  };

  std::vector<Round> startBatch(int count) {
    std::vector<Round> batch;
    for (int i = 0; i < count; ++i) {
      auto child = std::make_unique<ChildProcess>();
      const Signal finding = found_.signalTo(child->pid());
      batch.push_back({std::move(child), finding});
    }
    return batch;
  }

  // Start times are whole seconds: a successor must not start within the second of the one it replaces.
  bool secondHasPassed(Timestamp since) {
    return waitUntil([&] {
      ChildProcess probe;
      return found_.signalTo(probe.pid()).started > since;
    });
  }

  // The process of the finding ends and another takes its pid; -1 when somebody was faster.
  static Pid replace(ChildProcess& child, std::atomic<bool>& ending) {
    ending.store(true);
    child.killed();
    return spawnAs(child.pid());
  }

  FoundProcesses found_;
  LinuxSignals signals_{::getuid(), found_.clock()};
  RealSignals targets_{signals_};
};

// Processes are found, then end and are replaced by others with the same pid: before the remedy, while it
// begins, or whenever the machine gets to it. The remedy may reach the one that was found or nobody.
TEST_F(RemedyStorm, NoOtherProcessIsEverSignalled) {
  if (!pidsCanBeChosen()) GTEST_SKIP() << "choosing a pid takes root and a kernel from 5.5 on";
  constexpr int batchSize = 500;
  enum Timing : std::size_t { before, together, whenever, timings };
  int refused = 0;
  int successors = 0;
  const char* rounds = std::getenv("TARNWICK_STORM_ROUNDS");
  for (int left = rounds == nullptr ? 1'000 : std::atoi(rounds); left > 0; left -= batchSize) {
    std::vector<Round> batch = startBatch(std::min(left, batchSize));
    ASSERT_TRUE(secondHasPassed(batch.back().finding.started));
    for (std::size_t i = 0; i < batch.size(); ++i) {
      Round& round = batch[i];
      const std::size_t timing = i % timings;
      std::atomic<bool> ending{false};
      auto successor = std::async(std::launch::async, [&] { return replace(*round.child, ending); });
      if (timing == before) successor.wait();
      while (timing == together && !ending.load()) {
      }
      const std::optional<std::string> message = apply({round.finding}, targets_.targets());
      const Pid pid = successor.get();
      if (pid == round.finding.pid) {
        ++successors;
        ASSERT_EQ(ChildProcess::adopt(pid).killed(), SIGKILL) << "a successor was signalled";
      }
      ASSERT_TRUE(message || timing != before) << "nobody was left to be signalled";
      if (message) ++refused;
    }
  }
  EXPECT_GT(successors, 0);
  EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace tarnwick
