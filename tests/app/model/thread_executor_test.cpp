#include "app/model/thread_executor.h"

#include <latch>
#include <semaphore>

#include "tests/support/fake_model_services.h"

namespace {

// A main loop as a toolkit has one: sleeps until somebody wakes it.
struct MainLoop {
  void wake() { wakes.release(); }

  // Turns the loop until the condition holds; the test's own time limit ends a wait in vain.
  template <class Condition>
  void turnUntil(ThreadExecutor& executor, Condition holds) {
    while (!holds()) {
      wakes.acquire();
      executor.drainMain();
    }
  }

  std::counting_semaphore<> wakes{0};
};

TEST(ThreadExecutor, NoTaskWaitsForAnother) {
  MainLoop loop;
  ThreadExecutor executor([&] { loop.wake(); });
  constexpr int tasks = 12;
  std::latch all(tasks);
  std::atomic<int> onMain = 0;
  int ended = 0;
  for (int i = 0; i < tasks; ++i) {
    executor.background([&] {
      all.arrive_and_wait();
      if (executor.isMainThread()) ++onMain;
      executor.main([&] { ++ended; });
    });
  }
  loop.turnUntil(executor, [&] { return ended == tasks; });
  EXPECT_EQ(onMain, 0);
}

TEST(ThreadExecutor, MainTasksRunInOrderAndOnlyInTheirTurn) {
  int wakes = 0;
  ThreadExecutor executor([&] { ++wakes; });
  std::vector<int> ran;
  executor.main([&] {
    ran.push_back(1);
    EXPECT_TRUE(executor.isMainThread());
    executor.main([&] { ran.push_back(3); });
  });
  executor.main([&] { ran.push_back(2); });
  EXPECT_THAT(ran, SizeIs(0));
  executor.drainMain();
  EXPECT_THAT(ran, ElementsAre(1, 2));
  executor.drainMain();
  executor.drainMain();
  EXPECT_THAT(ran, ElementsAre(1, 2, 3));
  EXPECT_EQ(wakes, 3);
}

TEST(ThreadExecutor, AQuitWaitsForATaskButNotForEverAndTheEndDropsWhatIsLeftForTheMainThread) {
  for (const bool quits : {true, false}) {
    std::latch running(1);
    std::latch end(1);
    std::atomic<bool> finished = false;
    std::atomic<bool> ran = false;
    {
      ThreadExecutor executor([] {});
      executor.background([&] {
        running.count_down();
        end.wait();
        for (int i = 0; i < 1000; ++i) std::this_thread::yield();
        executor.main([&] { ran = true; });
        finished = true;
      });
      running.wait();
      EXPECT_TRUE(!quits || !executor.endWithin(0.05));
      if (quits) executor.background([&] { ran = true; });
      end.count_down();
      EXPECT_TRUE(!quits || executor.endWithin(60));
    }
    EXPECT_TRUE(finished);
    EXPECT_FALSE(ran) << "no task is taken any more";
  }
}

// Keeps plain, unguarded state as the real scan does: the thread sanitizer sees two checks at once, or a
// cache reset beside a check.
struct UnguardedServices : FakeServices {
  using FakeServices::FakeServices;
  std::string explainByChild(const std::string&, const std::string& evidence) override {
    return "It is " + evidence + ".";  // several at once are fine
  }
};

TEST(ThreadExecutor, TheModelStaysWholeWhileChecksRemediesAndGuessesRunAtOnce) {
  constexpr int rounds = 1000;
  MainLoop loop;
  ThreadExecutor executor([&] { loop.wake(); });
  UnguardedServices services(executor);
  Model model(executor, services, services.pasteboard());
  for (int round = 0; round < rounds; ++round) {
    const Finding finding{.id = "a", .evidence = "number " + std::to_string(round)};
    const Action stop{.label = "Stop", .fix = {Signal{.pid = 100 + round, .number = 15}}};
    const Action page{.label = "Open", .fix = {OpenTab{"browser", "page"}}};
    model.guess(finding);
    if (round % 2 == 0) model.refresh(round % 4 == 0);
    model.run(stop, finding);
    model.refresh(true);
    model.run(page, finding);
    model.copyReport();
    loop.turnUntil(executor, [&] { return !model.busy(); });
    model.run(page, finding);
  }
  loop.turnUntil(executor, [&] { return model.guesses().size() == rounds; });
  EXPECT_THAT(services.termedSeen, SizeIs(rounds)) << "checks";
  EXPECT_THAT(model.termed(), SizeIs(rounds / 2));
  EXPECT_EQ(model.guesses().at("number 999"), "It is number 999.");
}

}  // namespace
