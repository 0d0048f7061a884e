#include "app/settings/linux/user_defaults.h"

#include <utility>

#include "app/settings/linux/config_file.h"
#include "records/text.h"

namespace tarnwick {
namespace {

// The value when the line sets that name; empty otherwise.
std::string_view valueOf(std::string_view line, std::string_view name) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || trimmed(line.substr(0, equals)) != name) return {};
  return trimmed(line.substr(equals + 1));
}

}  // namespace

UserDefaults::UserDefaults(Files& files, std::string folder)
    : files_(files), file_(std::move(folder) + "/tarnwick/defaults") {}

bool UserDefaults::isTrue(std::string_view name) const {
  const std::string text = readConfigFile(files_, file_).value_or("");
  bool value = false;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view found = valueOf(takeLine(rest), name);
    if (!found.empty()) value = found == "true";
  }
  return value;
}

bool UserDefaults::set(std::string_view name, bool value) const {
  const auto old = readConfigFile(files_, file_);
  if (!old) return false;
  std::string text;
  for (std::string_view rest = *old; !rest.empty();) {
    const std::string_view line = takeLine(rest);
    if (valueOf(line, name).empty()) text.append(line) += '\n';
  }
  text.append(name).append(value ? " = true\n" : " = false\n");
  return replaceConfigFile(files_, file_, text);
}

}  // namespace tarnwick
