#include "records/app_name.h"

#include <algorithm>
#include <array>

namespace tarnwick {
namespace {

constexpr std::string_view bundleEnding = ".app";

// The first "/"-separated piece that names a bundle, without its ending.
std::optional<std::string> firstBundle(std::string_view inside) {
  while (!inside.empty()) {
    const std::string_view piece = inside.substr(0, inside.find('/'));
    if (piece.ends_with(bundleEnding)) {
      return std::string(piece.substr(0, piece.size() - bundleEnding.size()));
    }
    inside.remove_prefix(std::min(inside.size(), piece.size() + 1));
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> appName(std::string_view path, std::string_view home) {
  const std::string homeFolder = std::string(home) + "/Applications/";
  const std::array<std::string_view, 3> appDirs{"/Applications/", "/System/Applications/", homeFolder};
  for (const std::string_view folder : appDirs) {
    if (!path.starts_with(folder)) continue;
    if (path.find(".app/Contents/MacOS/") == std::string_view::npos) return std::nullopt;
    if (auto name = firstBundle(path.substr(folder.size()))) return name;
  }
  return std::nullopt;
}

}  // namespace tarnwick
