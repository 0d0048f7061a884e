#include "system/mounts.h"

#include <fcntl.h>

#include <array>
#include <cstddef>

#include "system/posix/descriptor.h"

namespace tarnwick {
namespace {

// No regular file to the program's usual readers: it has no size. A machine with many containers has
// thousands of lines.
std::string mountinfo() {
  constexpr std::size_t longest = std::size_t{4} << 20U;
  const Descriptor file(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
  std::string text;
  std::array<char, 4'096> block{};  // the kernel gives no more at once
  while (file.isOpen() && text.size() < longest) {
    const ssize_t count = file.read(block);
    if (count <= 0) break;
    text.append(block.data(), static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

std::vector<Mount> mounts() { return mountsIn(mountinfo()); }

DistantPoints distantMounts() { return distantIn(mountinfo()); }

}  // namespace tarnwick
