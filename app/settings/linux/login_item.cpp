#include "app/settings/linux/login_item.h"

#include <sstream>
#include <utility>

#include "app/settings/linux/config_file.h"

namespace tarnwick {
namespace {

// Desktop entries unescape a value twice: first as a text, then as a command line. Within the quotes of a
// command line `"`, "`", "$" and "\" need a backslash, and that backslash is written twice.
std::string quotedCommand(const std::string& path) {
  std::string quoted = "\"";
  for (const char c : path) {
    if (c == '\\') {
      quoted += "\\\\\\\\";
    } else if (c == '"' || c == '`' || c == '$') {
      quoted.append("\\\\") += c;
    } else if (c == '%') {
      quoted += "%%";
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

}  // namespace

LoginItem::LoginItem(Files& files, std::string folder, std::string executable)
    : files_(files),
      file_(std::move(folder) + "/autostart/tarnwick.desktop"),
      executable_(std::move(executable)) {}

bool LoginItem::isEnabled() const {
  std::istringstream lines(readConfigFile(files_, file_).value_or(""));
  bool startsSomething = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("Hidden=true") || line.starts_with("X-GNOME-Autostart-enabled=false")) return false;
    startsSomething = startsSomething || line.starts_with("Exec=");
  }
  return startsSomething;
}

bool LoginItem::setEnabled(bool on) const {
  if (!on) return files_.removeFile(file_);
  return replaceConfigFile(files_, file_,
                           "[Desktop Entry]\n"
                           "Type=Application\n"
                           "Name=Tarnwick\n"
                           "Comment=Why is this machine slow right now?\n"
                           "Exec=" +
                               quotedCommand(executable_) +
                               "\n"
                               "Terminal=false\n"
                               "X-GNOME-Autostart-enabled=true\n");
}

}  // namespace tarnwick
