#include "system/posix/descriptor.h"

#include <unistd.h>

#include <cerrno>

namespace tarnwick {

void Descriptor::close() {
  if (isOpen()) ::close(std::exchange(number_, -1));
}

ssize_t Descriptor::read(std::span<char> buffer) const {
  ssize_t count = -1;
  do {
    count = ::read(number_, buffer.data(), buffer.size());
  } while (count < 0 && errno == EINTR);
  return count;
}

}  // namespace tarnwick
