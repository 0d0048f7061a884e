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

UserDefaults::UserDefaults(std::string folder) : file_(std::move(folder) + "/tarnwick/defaults") {}

bool UserDefaults::isTrue(std::string_view name) const {
  const std::string text = readConfigFile(file_);
  bool value = false;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view found = valueOf(takeLine(rest), name);
    if (!found.empty()) value = found == "true";
  }
  return value;
}

bool UserDefaults::set(std::string_view name, bool value) const {
  const std::string old = readConfigFile(file_);
  std::string text;
  for (std::string_view rest = old; !rest.empty();) {
    const std::string_view line = takeLine(rest);
    if (valueOf(line, name).empty()) text.append(line) += '\n';
  }
  text.append(name).append(value ? " = true\n" : " = false\n");
  return replaceConfigFile(file_, text);
}

}  // namespace tarnwick
