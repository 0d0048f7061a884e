#include "app/cli/output.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <string>
#include <system_error>

#include "app/cli/terminal_text.h"
#include "app/cli/terminal_width.h"

namespace tarnwick {
namespace {

// 0, or the error number of the write that failed. A reader that went away is not an error of ours, so
// the signal that would end the process is kept off for the time of writing.
int writeAll(int descriptor, std::string_view text) {
  struct sigaction ignore {};
  struct sigaction before {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, &before);
  int failed = 0;
  while (!text.empty() && failed == 0) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      failed = errno;
    }
  }
  sigaction(SIGPIPE, &before, nullptr);
  return failed;
}

int writeTo(int descriptor, std::string_view text) {
  return isatty(descriptor) == 1 ? writeAll(descriptor, harmlessForTerminal(text))
                                 : writeAll(descriptor, text);
}

int statusOf(int failed) {
  if (failed == 0 || failed == EPIPE) return 0;
  return complain("the text could not be written: " + std::generic_category().message(failed) + ".");
}

}  // namespace

int printText(std::string_view text) { return statusOf(writeTo(STDOUT_FILENO, text)); }

int printLaidOut(std::string_view text) { return statusOf(writeAll(STDOUT_FILENO, text)); }

std::optional<TerminalLook> outputLook(bool colour) {
  if (isatty(STDOUT_FILENO) != 1) return std::nullopt;
  return TerminalLook{.columns = terminalColumns(STDOUT_FILENO), .colour = colour};
}

// The clock stands still while the machine sleeps, so a sleep does not make the checks follow one another.
bool waitWhileRead(double seconds) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  pollfd output{.fd = STDOUT_FILENO, .events = 0, .revents = 0};
  for (;;) {
    const double left = std::chrono::duration<double, std::milli>(end - Clock::now()).count();
    if (left <= 0) return true;
    constexpr double longest = 60'000;
    const int ready = poll(&output, 1, static_cast<int>(std::min(left, longest)) + 1);
    if (ready > 0) return false;
    if (ready < 0 && errno != EINTR) return false;
  }
}

void leaveLine() {
  if (isatty(STDERR_FILENO) == 1) writeAll(STDERR_FILENO, "\n");
}

int printDocument(std::string_view text) {
  const int failed = writeTo(STDOUT_FILENO, text);
  if (failed == 0) return 0;
  return complain("the document could not be written: " + std::generic_category().message(failed) + ".");
}

int complain(std::string_view sentence) {
  writeTo(STDERR_FILENO, "tarnwick: " + std::string(sentence) + "\n");
  return 1;
}

WaitingLine::WaitingLine(std::string_view text) : text_(isatty(STDERR_FILENO) == 1 ? text : "") {
  writeAll(STDERR_FILENO, text_);
}

// With blanks, which every terminal knows.
WaitingLine::~WaitingLine() {
  if (!text_.empty()) writeAll(STDERR_FILENO, "\r" + std::string(cellWidth(text_), ' ') + "\r");
}

}  // namespace tarnwick
