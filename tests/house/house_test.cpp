// The walls of the house, as checks over source text: who may include whom, where the operating system
// may be named, that every source file belongs to a target, and that no two types bear one name.

#include <iterator>
#include <regex>

#include "tests/support/testing.h"

namespace tarnwick {
namespace {

const std::filesystem::path sourceRoot = TARNWICK_SOURCE_DIR;
const std::vector<std::string> sourceFolders{"records", "system", "diagnosis", "sampling", "context",
                                             "app",     "bench",  "fuzz",      "tests"};

// Every file of the tree with one of those endings, relative to the root.
std::vector<std::string> filesEndingIn(const std::vector<std::string>& endings) {
  std::vector<std::string> files;
  for (const std::string& folder : sourceFolders) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(sourceRoot / folder)) {
      if (std::ranges::find(endings, entry.path().extension().string()) == endings.end()) continue;
      files.push_back(std::filesystem::relative(entry.path(), sourceRoot));
    }
  }
  return files;
}

struct Room {
  std::string_view folder;                   // the longest folder that a path begins with is its room
  std::vector<std::string_view> mayInclude;  // folders, or single headers
};

const std::vector<Room> rooms{
    {"records/", {"records/"}},
    {"system/", {"system/", "records/"}},
    {"diagnosis/", {"diagnosis/", "records/"}},
    {"sampling/decode/", {"sampling/decode/", "records/"}},
    {"sampling/engine/", {"sampling/engine/", "sampling/decode/", "system/", "records/"}},
    {"sampling/tools/", {"sampling/tools/", "system/", "records/"}},
    {"sampling/", {"sampling/", "system/", "records/"}},
    {"context/",
     {"context/", "system/", "records/", "diagnosis/surroundings.h", "sampling/tools/", "sampling/decode/",
      "sampling/browser_questions.h"}},
    {"app/cli/", {"app/cli/", "diagnosis/", "records/"}},
    {"app/", {"app/", "system/", "records/", "diagnosis/", "sampling/", "context/"}},
    {"bench/", {""}},
    {"fuzz/", {""}},
    {"tests/", {""}},
};

const Room* roomOf(std::string_view path) {
  const Room* best = nullptr;
  for (const Room& room : rooms) {
    if (path.starts_with(room.folder) && (best == nullptr || room.folder.size() > best->folder.size()))
      best = &room;
  }
  return best;
}

bool isSystemFolder(std::string_view path) {
  return std::regex_search(path.begin(), path.end(), std::regex("(^|/)(macos|linux|posix|qt)/"));
}

// A header of the language or of a library that is the same everywhere.
bool isPortable(const std::string& header) {
  const bool standard = header.find_first_of("./") == std::string::npos;
  return standard || std::regex_search(header, std::regex("^(fmt|nlohmann|utf8cpp|gtest|gmock|benchmark)/"));
}

template <class Visit>
void forEachMatch(std::string_view text, const std::string& pattern, Visit visit) {
  const std::regex regex(pattern, std::regex::ECMAScript | std::regex::multiline);
  for (std::cregex_iterator match(text.data(), text.data() + text.size(), regex), end; match != end;
       ++match) {
    visit(*match);
  }
}

// One sentence for every include in `text` that the file at `path` (relative to the root) may not have.
std::vector<std::string> forbiddenIncludes(std::string_view path, std::string_view text) {
  std::vector<std::string> forbidden;
  const Room* room = roomOf(path);
  if (room == nullptr) return {std::string(path) + " lies in no room"};
  forEachMatch(
      text, R"re(^[ \t]*#[ \t]*(?:include|import)[ \t]*(["<])([^">]*)[">])re", [&](const std::cmatch& match) {
        const std::string header = match[2];
        const bool own = match[1] == "\"";
        const bool free = isSystemFolder(path) || path.starts_with("tests/") || path.starts_with("bench/") ||
                          path.starts_with("fuzz/");
        const auto begins = [&](std::string_view prefix) { return header.starts_with(prefix); };
        const bool allowed = own ? std::ranges::any_of(room->mayInclude, begins) : free || isPortable(header);
        if (!allowed) forbidden.push_back(std::string(path) + " may not include " + header);
      });
  return forbidden;
}

// One sentence for every preprocessor condition on the platform outside the operating systems' folders.
std::vector<std::string> platformConditions(std::string_view path, std::string_view text) {
  std::vector<std::string> conditions;
  if (isSystemFolder(path)) return conditions;
  forEachMatch(
      text,
      R"re(^[ \t]*#[ \t]*(?:el)?if.*(?:__APPLE__|__MACH__|__linux|__unix|_WIN32|TARGET_OS_|__has_include).*)re",
      [&](const std::cmatch& match) {
        conditions.push_back(std::string(path) + " asks for the platform: " + match[0].str());
      });
  return conditions;
}

// The words of a CMakeLists.txt outside of its comments; files are named relative to its folder.
std::set<std::string> wordsOf(const std::string& cmakeLists) {
  std::istringstream words(
      std::regex_replace(std::regex_replace(cmakeLists, std::regex("#.*"), ""), std::regex("[()\"]"), " "));
  return {std::istream_iterator<std::string>(words), {}};
}

TEST(House, EverySourceFileIsNamedByATarget) {
  for (const std::string& file : filesEndingIn({".cpp", ".mm", ".swift"})) {
    std::filesystem::path folder = (sourceRoot / file).parent_path();
    while (!std::filesystem::exists(folder / "CMakeLists.txt")) folder = folder.parent_path();
    const std::string name = std::filesystem::relative(sourceRoot / file, folder);
    const std::set<std::string> words = wordsOf(textOfFile(folder / "CMakeLists.txt"));
    // As a list names it that has such a file for each system.
    const auto forAny = std::regex_replace(name, std::regex("(linux|macos)/"), "$${TARNWICK_SYSTEM}/");
    EXPECT_TRUE(words.contains(name) || words.contains(forAny)) << file << " is in no target";
  }
}

TEST(House, TheChecksCatchWhatTheyAreFor) {
  const std::tuple<const char*, const char*, std::size_t> includes[] = {
      {"records/wording.cpp", "#include \"records/snapshot.h\"\n#include <vector>\n#include <fmt/format.h>\n",
       0},
      {"diagnosis/detect.h", "#include \"sampling/scan.h\"\n  #  include \"context/x.h\"\n", 2},
      {"context/git_reader.cpp", "#include \"diagnosis/detect.h\"\n#include <unistd.h>\n", 2},
      {"elsewhere/x.cpp", "", 1}};
  for (const auto& [path, text, broken] : includes)
    EXPECT_THAT(forbiddenIncludes(path, text), SizeIs(broken)) << path;
  EXPECT_THAT(platformConditions("app/x.cpp", "# if defined(__APPLE__)\n#ifdef __linux__\n#ifndef NDEBUG\n"),
              SizeIs(2));
  EXPECT_THAT(platformConditions("app/macos/run.mm", "#if TARGET_OS_OSX\n"), IsEmpty());
  EXPECT_THAT(wordsOf("room(a SOURCES one.cpp\n  posix/two.cpp)  # three.cpp\n"),
              ElementsAre("SOURCES", "a", "one.cpp", "posix/two.cpp", "room"));
}

// No two types of one qualified name: where two files of a program define such a pair, the linker takes one
// of each function and says nothing. Types of an anonymous namespace are their file's own, and files of two
// operating systems never meet in one program.
constexpr const char* anonymous = "(anonymous)";

// The qualified names of the types that a source text defines outside of types and functions. The formatter,
// which the checks hold every file to, puts a namespace, a type and the brace that ends one at the start of
// a line, and everything inside a type or a function further in.
std::vector<std::string> definedTypes(const std::string& text) {
  static const std::regex opened(R"(^(?:inline )?namespace ?([\w:]*) \{$)");
  static const std::regex type(
      R"(^(?:template <.*> )?(?:(?:class|struct|union|enum(?: class| struct)?) (?:\[\[.*\]\] |alignas\(.*\) )?(\w+)(?: final)?(?: :[^;]*)?(?: \{.*|$)|using (\w+) =.*|@interface (\w+) :.*))");
  std::vector<std::string> scopes;
  std::vector<std::string> names;
  std::istringstream lines(text);
  std::smatch found;
  for (std::string line; std::getline(lines, line);) {
    if (std::regex_match(line, found, opened)) {
      scopes.push_back((found.str(1).empty() ? anonymous : found.str(1)) + "::");
    } else if (line.starts_with("}  // namespace") && !scopes.empty()) {
      scopes.pop_back();
    } else if (std::regex_match(line, found, type)) {
      std::string name;
      for (const std::string& scope : scopes) name += scope;
      names.push_back(name + found.str(1) + found.str(2) + found.str(3));
    }
  }
  return names;
}

// Of the system that alone compiles a file; empty: of every system.
std::string systemOf(const std::string& path) {
  if (path.find("macos/") != std::string::npos) return "macos";
  return path.find("linux/") != std::string::npos || path.find("/qt/") != std::string::npos ? "linux" : "";
}

// One sentence for every type whose qualified name an earlier one has already, in files by path.
std::vector<std::string> doubledTypes(const std::vector<std::pair<std::string, std::string>>& sources) {
  std::vector<std::string> doubled;
  std::map<std::string, std::vector<std::string>> placesOf;
  for (const auto& [path, text] : sources) {
    for (const std::string& name : definedTypes(text)) {
      const bool ownOfFile = name.find(anonymous) != std::string::npos;
      std::vector<std::string>& places = placesOf[ownOfFile ? path + " " + name : name];
      for (const std::string& place : places) {
        const std::string one = systemOf(place);
        const std::string two = systemOf(path);
        if (one.empty() || two.empty() || one == two) doubled.push_back(name + ": " + place + ", " + path);
      }
      places.push_back(path);
    }
  }
  return doubled;
}

TEST(House, NoFileIncludesUpwardsOrAsksForThePlatformAndEveryTypeHasANameOfItsOwn) {
  std::vector<std::pair<std::string, std::string>> sources;
  std::size_t types = 0;
  for (const std::string& file : filesEndingIn({".h", ".cpp", ".mm"})) {
    const std::string& text = sources.emplace_back(file, textOfFile(sourceRoot / file)).second;
    EXPECT_THAT(forbiddenIncludes(file, text), IsEmpty());
    EXPECT_THAT(platformConditions(file, text), IsEmpty());
    types += definedTypes(text).size();
  }
  EXPECT_GT(types, 300U);
  EXPECT_THAT(doubledTypes(sources), IsEmpty());
}

TEST(TypeNames, ADefinitionIsSeenHoweverItIsWritten) {
  const char* text =
      "struct A {};\nclass B final : public A {\n};\nclass C\n    : public Long {\n};\nenum class D : int { two };\n"
      "using E = int;\ntemplate <class T>\nusing F = T;\ntemplate <class T>\nclass [[nodiscard]] G {\n  struct I {};\n};\n"
      "namespace a::b {\nnamespace {\nstruct H {};\n}  // namespace\nstruct I {};\n}  // namespace a::b\nstruct J {};\n"
      "@interface K : NSObject\n@end\n@interface K ()\n@end\n@class L;\nclass M;\nenum N : int;\nstruct O o;\n"
      "template <>\nstruct P<int> {};\n// struct Q {};\nvoid f() {\n  struct R {};\n}\nusing std::string;\n";
  EXPECT_THAT(definedTypes(text),
              ElementsAre("A", "B", "C", "D", "E", "F", "G", "a::b::(anonymous)::H", "a::b::I", "J", "K"));
}

TEST(TypeNames, OnlyTypesThatCanMeetInAProgramAreADouble) {
  const auto doubles = [](const char* one, const char* other, const std::string& scope = "") {
    const std::string text = "namespace a {\n" + scope + "struct S {};\n";
    return doubledTypes({{one, text}, {other, text}}).size();
  };
  EXPECT_EQ(doubles("diagnosis/a.h", "app/b.h") + doubles("app/panel/qt/a.h", "app/linux/a.h"), 2U);
  EXPECT_EQ(doubles("app/a.h", "app/macos/a.h") + doubles("app/panel/qt/a.h", "app/panel/macos/a.h"), 1U);
  EXPECT_EQ(doubles("diagnosis/a.cpp", "app/b.cpp", "namespace {\n"), 0U);
  EXPECT_EQ(doubles("diagnosis/a.cpp", "diagnosis/a.cpp", "namespace {\n"), 1U);
}

}  // namespace
}  // namespace tarnwick
