// No two types of one qualified name: where two files of a program define such a pair, the linker takes one
// of each function and says nothing. Types of an anonymous namespace are their file's own, and files of two
// operating systems never meet in one program.

#include <regex>

#include "tests/house/source_tree.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

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

TEST(TypeNames, EveryQualifiedNameIsGivenOnce) {
  std::vector<std::pair<std::string, std::string>> sources;
  std::size_t types = 0;
  for (const std::string& file : filesEndingIn({".h", ".cpp", ".mm"})) {
    sources.emplace_back(file, textOfFile(sourceRoot / file));
    types += definedTypes(sources.back().second).size();
  }
  EXPECT_GT(types, 300U);
  EXPECT_THAT(doubledTypes(sources), IsEmpty());
}

TEST(TypeNames, ADefinitionIsSeenHoweverItIsWritten) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"struct A {};\nclass B final : public A {\n};\nclass C\n    : public Long {\n};", {"A", "B", "C"}},
      {"enum class D : int { two };\nusing E = int;\ntemplate <class T>\nusing F = T;", {"D", "E", "F"}},
      {"template <class T>\nclass [[nodiscard]] G {\n  struct Inner {};\n};", {"G"}},
      {"namespace a::b {\nnamespace {\nstruct H {};\n}  // namespace\nstruct I {};\n}  // namespace a::b\n"
       "struct J {};",
       {"a::b::(anonymous)::H", "a::b::I", "J"}},
      {"@interface K : NSObject\n@end\n@interface K ()\n@end\n@class L;", {"K"}},
      {"class M;\nenum N : int;\nstruct O o;\ntemplate <>\nstruct P<int> {};\n// struct Q {};", {}},
      {"void f() {\n  struct R {};\n}\nusing std::string;\nusing namespace std;\nnamespace s = t;", {}},
  };
  for (const auto& [text, names] : cases) EXPECT_EQ(definedTypes(text), names) << text;
}

TEST(TypeNames, OnlyTypesThatCanMeetInAProgramAreADouble) {
  const char* named = "namespace a {\nstruct S {};\n";
  const char* hidden = "namespace a {\nnamespace {\nstruct S {};\n";
  const std::tuple<const char*, const char*, const char*, const char*, std::size_t> cases[] = {
      {"diagnosis/a.h", named, "app/b.h", named, 1},
      {"diagnosis/a.h", named, "app/b.h", "namespace a::panel {\nstruct S {};\n", 0},
      {"diagnosis/a.cpp", hidden, "app/b.cpp", hidden, 0},
      {"diagnosis/a.cpp", hidden, "diagnosis/a.cpp", hidden, 1},
      {"app/panel/qt/a.h", named, "app/panel/macos/a.h", named, 0},
      {"app/panel/qt/a.h", named, "app/linux/a.h", named, 1},
      {"app/a.h", named, "app/macos/a.h", named, 1},
  };
  for (const auto& [one, text, two, other, doubles] : cases)
    EXPECT_THAT(doubledTypes({{one, text}, {two, other}}), SizeIs(doubles)) << one << " " << two << other;
}

}  // namespace
}  // namespace tarnwick
