// Names of systemd units as desktops give them to the applications they start. Takes text, never reads;
// what does not follow the form is absent.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// The desktop entry's id in a unit name of the form "app[-launcher]-ID[@random].service" or
// "app[-launcher]-ID-random.scope", with the unit name's escapes undone. Never empty, valid UTF-8, without
// slashes and zero bytes, and not "." or "..", so that it is safe as a part of a file name.
std::optional<std::string> applicationID(std::string_view unitName);

// The control group of the application unit of the user manager that holds a process, from its PID/cgroup: a
// path from the tree's root that ends with the unit's name. Its bytes stay as they are.
std::optional<std::string> appUnitFolder(std::string_view cgroupText);

}  // namespace tarnwick
