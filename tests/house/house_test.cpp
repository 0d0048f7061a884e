// The walls of the house, as checks over source text: who may include whom, where the operating system
// may be named, that every source file belongs to a target, and that no two types bear one name.

#include <iterator>
#include <regex>

#include "tests/support/testing.h"

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

// What the pattern finds in the lines of `text`, each with its groups.
std::vector<Strings> matches(std::string_view text, const std::string& pattern) {
  const std::regex regex(pattern, std::regex::ECMAScript | std::regex::multiline);
  std::vector<Strings> all;
  for (std::cregex_iterator match(text.data(), text.data() + text.size(), regex), end; match != end; ++match)
    all.emplace_back(match->begin(), match->end());
  return all;
}

// One sentence for every include in `text` that the file at `path` (relative to the root) may not have.
std::vector<std::string> forbiddenIncludes(std::string_view path, std::string_view text) {
  std::vector<std::string> forbidden;
  const Room* room = roomOf(path);
  if (room == nullptr) return {std::string(path) + " lies in no room"};
  const bool free = isSystemFolder(path) || path.starts_with("tests/") || path.starts_with("bench/") ||
                    path.starts_with("fuzz/");
  for (const Strings& match :
       matches(text, R"re(^[ \t]*#[ \t]*(?:include|import)[ \t]*(["<])([^">]*)[">])re")) {
    const auto begins = [&](std::string_view prefix) { return match[2].starts_with(prefix); };
    const bool own = match[1] == "\"";
    const bool allowed = own ? std::ranges::any_of(room->mayInclude, begins) : free || isPortable(match[2]);
    if (!allowed) forbidden.push_back(std::string(path) + " may not include " + match[2]);
  }
  return forbidden;
}

// One sentence for every preprocessor condition on the platform outside the operating systems' folders.
std::vector<std::string> platformConditions(std::string_view path, std::string_view text) {
  Strings conditions;
  if (isSystemFolder(path)) return conditions;
  const char* asks =
      R"re(^[ \t]*#[ \t]*(?:el)?if.*(?:__APPLE__|__MACH__|__linux|__unix|_WIN32|TARGET_OS_|__has_include).*)re";
  for (const Strings& match : matches(text, asks))
    conditions.push_back(std::string(path) + " asks for the platform: " + match[0]);
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

TEST(House, EachCheckFindsWhatItIsFor) {
  const char* upwards =
      "#include \"sampling/scan.h\"\n  #  include \"records/x.h\"\n#include <unistd.h>\n#include <vector>\n";
  EXPECT_THAT(forbiddenIncludes("diagnosis/detect.h", upwards), SizeIs(2));
  EXPECT_THAT(forbiddenIncludes("elsewhere/x.cpp", ""), SizeIs(1));
  EXPECT_THAT(platformConditions("app/x.cpp", "# if defined(__APPLE__)\n#ifdef __linux__\n#ifndef NDEBUG\n"),
              SizeIs(2));
  EXPECT_FALSE(wordsOf("room(a SOURCES one.cpp)  # three.cpp\n").contains("three.cpp"));
  const std::string text =
      "namespace a {\nstruct A {};\nclass [[nodiscard]] B final\n    : public Long {\nenum class C : int { two };\nusing D = int;\n  struct Inner {};\nclass E;\nnamespace {\nstruct F {};\n";
  EXPECT_THAT(definedTypes(text), ElementsAre("a::A", "a::B", "a::C", "a::D", "a::(anonymous)::F"));
  EXPECT_THAT(doubledTypes({{"app/a.h", text}, {"app/linux/a.h", text}}), SizeIs(4))
      << "not what is its file's own";
  EXPECT_THAT(doubledTypes({{"app/panel/qt/a.h", text}, {"app/panel/macos/a.h", text}}), IsEmpty());
}

}  // namespace
