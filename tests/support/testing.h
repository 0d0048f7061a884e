// What every test begins with: the test library, the common part of the standard library, files and waiting,
// and the matchers by their short names.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "records/checked.h"

namespace tarnwick {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;

using Strings = std::vector<std::string>;
using Text = std::optional<std::string>;

// A folder of its own for one test, removed with everything in it at the end.
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
  TempFolder(TempFolder&&) = delete;  // nor copied

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

// A whole file as text, such as a fixture.
inline std::string textOfFile(const std::string& path) {
  std::stringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

// What a fake answers that has its answers prepared; absent for any other question.
template <class Key, class Value>
std::optional<Value> answerOf(const std::map<Key, Value>& answers, const Key& question) {
  const auto found = answers.find(question);
  return found == answers.end() ? std::nullopt : std::optional<Value>(found->second);
}

// Asks until the condition holds, such as what another process does; false when it did not within half a
// minute.
template <typename Condition>
bool waitUntil(Condition holds) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!holds()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

}  // namespace tarnwick

using namespace tarnwick;  // what all tests are about
