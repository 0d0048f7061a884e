#include "app/remedies/linux/detached_program.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <utility>

#include "system/environment.h"
#include "system/posix/descriptor.h"
#include "system/posix/differences.h"

namespace tarnwick {
namespace {

constexpr int startMilliseconds = 10'000;  // the machine is slow, or nobody would be here

// What was handed to this program so that the desktop knows the window of its start; it is used up.
bool belongsToOurStart(const std::string& variable) {
  return variable.starts_with("DESKTOP_STARTUP_ID=") || variable.starts_with("XDG_ACTIVATION_TOKEN=");
}

// The NULL-ended list of pointers that the system takes; lives as long as `texts`.
std::vector<char*> listOf(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// From here on, up to the new program, only what is allowed between fork and exec.
[[noreturn]] void fail(int report) {
  const char failed = 'x';
  while (::write(report, &failed, 1) < 0 && errno == EINTR) {
  }
  ::_exit(127);
}

// The session's leader ends at once: an orphan, and one that no terminal can become the terminal of.
void becomeNobodysChild(int report) {
  ::setsid();
  const pid_t orphan = ::fork();
  if (orphan < 0) fail(report);
  if (orphan > 0) ::_exit(0);
}

// `report` closes with the start of the new program and is written to when there is none.
[[noreturn]] void become(int report, char** words, char** variables) {
  constexpr int reportHere = STDERR_FILENO + 1;
  report = ::fcntl(report, F_DUPFD, reportHere + 1);  // our own streams may have been closed, and it be one
  const int nothing = ::open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(nothing, stream);
  ::dup2(report, reportHere);
  ::fcntl(reportHere, F_SETFD, FD_CLOEXEC);
  closeAllFrom(reportHere + 1);
  // The C library would leave out the two that it keeps for itself; whoever started us may ignore them.
  const std::array<unsigned long, 4> byDefault{};  // handler, flags, restorer, mask, as the kernel has them
  for (int number = 1; number < NSIG; ++number)
    ::syscall(SYS_rt_sigaction, number, byDefault.data(), nullptr, sizeof(std::uint64_t));
  sigset_t none;
  sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  if (::chdir("/") == 0) ::execve(words[0], words, variables);
  fail(reportHere);
}

// Whether the report ended without a word.
bool hasStarted(const Descriptor& report) {
  pollfd wanted{report.number(), POLLIN, 0};
  int ready = 0;
  do {
    ready = ::poll(&wanted, 1, startMilliseconds);
  } while (ready < 0 && errno == EINTR);
  std::array<char, 1> word{};
  return ready > 0 && report.read(word) == 0;
}

}  // namespace

bool startDetached(const std::string& path, std::vector<std::string> words) {
  words.insert(words.begin(), path);
  std::vector<std::string> variables = environmentVariables();
  std::erase_if(variables, belongsToOurStart);
  const std::vector<char*> wordList = listOf(words);
  const std::vector<char*> variableList = listOf(variables);
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return false;
  const Descriptor report(ends[0]);
  Descriptor itsReport(ends[1]);
  const pid_t child = ::fork();
  if (child == 0) {
    becomeNobodysChild(itsReport.number());
    become(itsReport.number(), const_cast<char**>(wordList.data()), const_cast<char**>(variableList.data()));
  }
  itsReport.close();
  if (child < 0) return false;
  while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
  return hasStarted(report);
}

}  // namespace tarnwick
