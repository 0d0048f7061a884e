#include "sampling/linux/app_slice.h"

#include "system/small_file.h"

namespace tarnwick {

std::optional<std::string> appSlice(const std::string& cgroupRoot, std::uint32_t uid) {
  const std::string user = std::to_string(uid);
  const std::string slice = "/user.slice/user-" + user + ".slice/user@" + user + ".service/app.slice";
  // The unified layout, the mixed one, the old one: beside a version 1 tree the session manager's groups are
  // one level down.
  for (const char* mount : {"", "/unified", "/systemd"}) {
    std::string path = cgroupRoot;
    path.append(mount).append(slice);
    if (isDirectory(path)) return path;
  }
  return std::nullopt;
}

}  // namespace tarnwick
