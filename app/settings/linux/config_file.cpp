#include "app/settings/linux/config_file.h"

#include <cstddef>

namespace tarnwick {
namespace {

constexpr std::size_t largest = 64UL * 1024;  // bytes

}  // namespace

std::optional<std::string> readConfigFile(Files& files, const std::string& path) {
  const std::size_t before = files.misses();
  auto text = files.readSmallFile(path, largest);
  if (files.misses() != before) return std::nullopt;
  return text.value_or("");
}

bool replaceConfigFile(Files& files, const std::string& path, const std::string& text) {
  return files.makeFolder(path.substr(0, path.rfind('/'))) && files.replaceFile(path, text);
}

}  // namespace tarnwick
