#include "app/program/own_process.h"

#include <mach-o/dyld.h>
#include <malloc/malloc.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace tarnwick {

std::optional<std::string> ownExecutable() {
  std::uint32_t size = 0;
  ::_NSGetExecutablePath(nullptr, &size);  // only tells the size, the zero byte included
  std::string path(size, '\0');
  if (size == 0 || ::_NSGetExecutablePath(path.data(), &size) != 0) return std::nullopt;
  path.resize(path.find('\0') == std::string::npos ? path.size() : path.find('\0'));
  return path;
}

void leaveSymbolicLink(char** argv) {
  const auto started = ownExecutable();
  if (!started) return;
  const std::unique_ptr<char, decltype(&std::free)> file(::realpath(started->c_str(), nullptr), &std::free);
  if (file && *started != file.get()) ::execv(file.get(), argv);
}

void freeMemory() { ::malloc_zone_pressure_relief(nullptr, 0); }

}  // namespace tarnwick
