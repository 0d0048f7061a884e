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
