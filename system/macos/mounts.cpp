#include "system/mounts.h"

#include <sys/mount.h>
#include <sys/param.h>

#include <cstddef>

namespace tarnwick {

// MNT_NOWAIT: what the kernel knows already, without a question to any file system.
std::vector<Mount> mounts() {
  std::vector<Mount> all;
  const int count = ::getfsstat(nullptr, 0, MNT_NOWAIT);
  if (count <= 0) return all;
  std::vector<struct statfs> volumes(static_cast<std::size_t>(count));
  const int got =
      ::getfsstat(volumes.data(), static_cast<int>(volumes.size() * sizeof(struct statfs)), MNT_NOWAIT);
  for (int i = 0; i < got && i < count; ++i) {
    const struct statfs& volume = volumes[static_cast<std::size_t>(i)];
    all.push_back({volume.f_mntonname, volume.f_fstypename});
  }
  return all;
}

DistantPoints distantMounts() {
  const std::vector<Mount> all = mounts();
  return all.empty() ? std::nullopt : DistantPoints(distantPoints(all));
}

}  // namespace tarnwick
