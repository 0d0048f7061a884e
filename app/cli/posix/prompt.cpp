#include "app/cli/prompt.h"

#include <unistd.h>

#include <cerrno>

namespace tarnwick {

bool canAsk() { return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1; }

// Byte by byte: what follows belongs to the next question.
std::optional<std::string> readAnswer() {
  constexpr std::size_t longest = 4096;
  std::string line;
  for (;;) {
    char byte = 0;
    const ssize_t got = read(STDIN_FILENO, &byte, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return std::nullopt;
    if (byte == '\n') break;
    if (line.size() < longest) line += byte;
  }
  const std::size_t first = line.find_first_not_of(" \t\r");
  if (first == std::string::npos) return "";
  return line.substr(first, line.find_last_not_of(" \t\r") - first + 1);
}

}  // namespace tarnwick
