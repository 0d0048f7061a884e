#include <sys/ioctl.h>

#include "app/cli/terminal_width.h"

namespace tarnwick {

std::optional<std::size_t> terminalColumns(int descriptor) {
  constexpr std::size_t usual = 80;
  winsize size{};
  if (ioctl(descriptor, TIOCGWINSZ, &size) != 0) return std::nullopt;
  return size.ws_col == 0 ? usual : size.ws_col;
}

}  // namespace tarnwick
