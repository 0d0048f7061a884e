// A whole file as text, such as a fixture.
#pragma once

#include <fstream>
#include <sstream>
#include <string>

namespace tarnwick {

inline std::string textOfFile(const std::string& path) {
  std::stringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

}  // namespace tarnwick
