#include "app/cli/output.h"

#include <sys/mman.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/support/testing.h"

namespace {

// Counted by the child's handler, read by the test.
std::atomic<int>* interruptions = nullptr;

// In the child: a signal each millisecond, which interrupts whatever waits.
void interruptOften() {
  struct sigaction count {};
  count.sa_handler = [](int) { ++*interruptions; };
  ::sigaction(SIGALRM, &count, nullptr);
  const itimerval often{{0, 1'000}, {0, 1'000}};
  ::setitimer(ITIMER_REAL, &often, nullptr);
}

TEST(Output, IsWholeThoughSignalsInterruptTheWriting) {
  void* shared =
      ::mmap(nullptr, sizeof *interruptions, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(shared, MAP_FAILED);
  interruptions = new (shared) std::atomic<int>(0);
  std::array<int, 2> channel{};
  ASSERT_EQ(::pipe(channel.data()), 0);
  const std::string text(1'000'000, 'x');  // far more than a pipe holds
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(channel[1], STDOUT_FILENO);
    for (const int end : channel) ::close(end);
    interruptOften();
    ::_exit(printText(text));
  }
  ::close(channel[1]);
  EXPECT_TRUE(waitUntil([] { return *interruptions > 50; })) << "while the pipe is full and nobody reads";
  std::string arrived;
  std::array<char, 65'536> part{};
  for (ssize_t size = 0; (size = ::read(channel[0], part.data(), part.size())) > 0;)
    arrived.append(part.data(), static_cast<std::size_t>(size));
  int status = -1;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(arrived.size(), text.size());
  ::close(channel[0]);
  ::munmap(shared, sizeof *interruptions);
}

}  // namespace
