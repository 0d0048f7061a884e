#include "app/settings/linux/config_file.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "system/small_file.h"

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t largest = 64UL * 1024;  // bytes

}  // namespace

std::string readConfigFile(const std::string& path) { return readSmallFile(path, largest).value_or(""); }

bool replaceConfigFile(const std::string& path, const std::string& text) {
  std::error_code failure;
  // A link (many keep their configuration elsewhere) stays a link.
  const fs::path target =
      fs::is_symlink(path, failure) ? fs::weakly_canonical(path, failure) : fs::path(path);
  if (failure && target.empty()) return false;
  fs::create_directories(target.parent_path(), failure);
  const fs::path fresh = target.string() + "." + std::to_string(getpid());
  std::FILE* file = std::fopen(fresh.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  if (std::fclose(file) == 0 && written) {
    fs::rename(fresh, target, failure);
    if (!failure) return true;
  }
  fs::remove(fresh, failure);
  return false;
}

}  // namespace tarnwick
