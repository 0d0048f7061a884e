// A folder of its own for one test, removed with everything in it at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "records/checked.h"

namespace tarnwick {

class TempFolder {
 public:
  TempFolder()
      : path_(std::filesystem::canonical(std::filesystem::temp_directory_path()) / "tarnwick-XXXXXX") {
    if (::mkdtemp(path_.data()) == nullptr) fault("no temporary folder");
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string at(const std::string& name) const { return path_ + "/" + name; }

  // Makes the file and the folders above it; gives its path.
  std::string write(const std::string& name, std::string_view bytes) const {
    std::string path = at(name);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

  // A shell script that can be run as a program.
  std::string script(const std::string& name, const std::string& body) const {
    std::string path = write(name, "#!/bin/sh\n" + body + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
  }

 private:
  std::string path_;
};

}  // namespace tarnwick
