#include <gmock/gmock.h>

#include <filesystem>
#include <regex>

#include "tests/house/house_rules.h"
#include "tests/support/text_of_file.h"

namespace tarnwick {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::SizeIs;

const fs::path root = TARNWICK_SOURCE_DIR;
const std::vector<std::string> folders{"records", "diagnosis", "sampling", "context",
                                       "app",     "bench",     "tests"};

// Every file of the tree with one of those endings, relative to the root.
std::vector<std::string> filesEndingIn(const std::vector<std::string>& endings) {
  std::vector<std::string> files;
  for (const std::string& folder : folders) {
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
      const std::string ending = entry.path().extension();
      if (std::find(endings.begin(), endings.end(), ending) == endings.end()) continue;
      files.push_back(fs::relative(entry.path(), root));
    }
  }
  return files;
}

// "linux/x.cpp" as a list names it that has such a file for each system.
std::string forAnySystem(const std::string& name) {
  return std::regex_replace(name, std::regex("(linux|macos)/"), "$${TARNWICK_SYSTEM}/");
}

TEST(House, NoFileIncludesUpwardsOrAsksForThePlatform) {
  const std::vector<std::string> files = filesEndingIn({".h", ".cpp", ".mm"});
  EXPECT_GT(files.size(), 20U);
  for (const std::string& file : files) {
    const std::string text = textOfFile(root / file);
    EXPECT_THAT(forbiddenIncludes(file, text), IsEmpty());
    EXPECT_THAT(platformConditions(file, text), IsEmpty());
  }
}

TEST(House, EverySourceFileIsNamedByATarget) {
  for (const std::string& file : filesEndingIn({".cpp", ".mm", ".swift"})) {
    fs::path folder = (root / file).parent_path();
    while (!fs::exists(folder / "CMakeLists.txt")) folder = folder.parent_path();
    const std::string name = fs::relative(root / file, folder);
    const std::string list = textOfFile(folder / "CMakeLists.txt");
    EXPECT_TRUE(isNamed(name, list) || isNamed(forAnySystem(name), list)) << file << " is in no target";
  }
}

TEST(House, TheChecksCatchWhatTheyAreFor) {
  const std::tuple<const char*, const char*, std::size_t> includes[] = {
      {"records/wording.cpp", "#include \"records/snapshot.h\"\n#include <vector>\n#include <fmt/format.h>\n",
       0},
      {"diagnosis/detect.h", "#include \"sampling/scan.h\"\n  #  include \"context/x.h\"\n", 2},
      {"context/git_reader.cpp", "#include \"diagnosis/detect.h\"\n", 1},
      {"sampling/tools/tool_runner.h", "#include \"sampling/scan.h\"\n", 1},
      {"sampling/scan.cpp", "#include <unistd.h>\n#include <sys/stat.h>\n", 2},
      {"elsewhere/x.cpp", "", 1},
  };
  for (const auto& [path, text, broken] : includes)
    EXPECT_THAT(forbiddenIncludes(path, text), SizeIs(broken)) << path << text;

  EXPECT_THAT(platformConditions("app/run.cpp", "int x;\n# if defined(__APPLE__)\n#ifdef __linux__\n"),
              SizeIs(2));
  EXPECT_THAT(platformConditions("app/macos/run.mm", "#if TARGET_OS_OSX\n"), IsEmpty());
  EXPECT_THAT(platformConditions("app/run.cpp", "#ifndef NDEBUG\n"), IsEmpty());

  const char* list = "room(a SOURCES one.cpp posix/two.cpp)\n# three.cpp\n";
  EXPECT_TRUE(isNamed("one.cpp", list));
  EXPECT_TRUE(isNamed("posix/two.cpp", list));
  for (const char* missing : {"ne.cpp", "two.cpp", "one.cp", "three.cpp"})
    EXPECT_FALSE(isNamed(missing, list)) << missing;
}

}  // namespace
}  // namespace tarnwick
