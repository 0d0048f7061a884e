// The texts of --help and --version.
#pragma once

#include <string>

namespace tarnwick {

std::string helpText();
std::string versionText();

}  // namespace tarnwick
