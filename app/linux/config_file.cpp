#include "app/linux/config_file.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t largest = 64UL * 1024;

}  // namespace

std::string readConfigFile(const std::string& path) {
  std::error_code failure;
  if (!fs::is_regular_file(path, failure)) return {};  // a pipe would block
  const std::uintmax_t size = fs::file_size(path, failure);
  if (failure || size > largest) return {};
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool replaceConfigFile(const std::string& path, const std::string& text) {
  std::error_code failure;
  // A link (many keep their configuration elsewhere) stays a link.
  const fs::path target =
      fs::is_symlink(path, failure) ? fs::weakly_canonical(path, failure) : fs::path(path);
  if (failure && target.empty()) return false;
  fs::create_directories(target.parent_path(), failure);
  const fs::path fresh = target.string() + "." + std::to_string(getpid());
  std::ofstream file(fresh, std::ios::binary | std::ios::trunc);
  file << text;
  file.close();
  if (file.good()) {
    fs::rename(fresh, target, failure);
    if (!failure) return true;
  }
  fs::remove(fresh, failure);
  return false;
}

}  // namespace tarnwick
