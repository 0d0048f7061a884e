#include "app/cli/output.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "app/cli/terminal_text.h"

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

}  // namespace

int printText(std::string_view text) {
  const int failed = writeTo(STDOUT_FILENO, text);
  if (failed == 0 || failed == EPIPE) return 0;
  return complain("the text could not be written: " + std::generic_category().message(failed) + ".");
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

WaitingLine::WaitingLine(std::string_view text) : shown_(isatty(STDERR_FILENO) == 1) {
  if (shown_) writeAll(STDERR_FILENO, text);
}

WaitingLine::~WaitingLine() {
  constexpr std::string_view eraseLine = "\r\x1B[K";
  if (shown_) writeAll(STDERR_FILENO, eraseLine);
}

}  // namespace tarnwick
