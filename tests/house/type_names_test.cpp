// No two types of one qualified name: where two files of a program define such a pair, the linker takes one
// of each function and says nothing. Types of an anonymous namespace are their file's own, and files of two
// operating systems never meet in one program.

#include "tests/house/source_tree.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

constexpr const char* anonymous = "(anonymous)";

bool isWordCharacter(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

// Words and single signs of a source text, "::" and "[[" in one piece; a literal is one quote. Comments and
// the preprocessor's lines are gone.
class Tokens {
 public:
  explicit Tokens(std::string_view text) : text_(text) {
    while (at_ < text_.size()) readOne();
  }

  std::vector<std::string> take() { return std::move(tokens_); }

 private:
  bool isNext(std::string_view what) const { return text_.substr(at_).starts_with(what); }
  void skipPast(std::string_view what) { at_ = std::min(text_.find(what, at_), text_.size()) + what.size(); }

  void readOne() {
    const char c = text_[at_];
    if (c == '\n') lineStarts_ = true;
    if (std::isspace(static_cast<unsigned char>(c)) != 0) {
      ++at_;
    } else if (isNext("//")) {
      at_ = std::min(text_.find('\n', at_), text_.size());
    } else if (isNext("/*")) {
      at_ += 2;
      skipPast("*/");
    } else if (c == '#' && lineStarts_) {
      skipDirective();
    } else {
      lineStarts_ = false;
      readToken(c);
    }
  }

  void readToken(char c) {
    if (c == '"' || c == '\'') {
      skipLiteral(c);
    } else if (isWordCharacter(c)) {
      readWord();
    } else {
      const std::size_t length = isNext("::") || isNext("[[") ? 2U : 1U;
      tokens_.emplace_back(text_.substr(at_, length));
      at_ += length;
    }
  }

  void skipDirective() {
    while (at_ < text_.size() && text_[at_] != '\n') at_ += text_[at_] == '\\' ? 2U : 1U;
  }

  void skipLiteral(char quote) {
    tokens_.emplace_back("\"");
    for (++at_; at_ < text_.size() && text_[at_] != quote; ++at_) at_ += text_[at_] == '\\' ? 1U : 0U;
    ++at_;
  }

  // A number's digits may be grouped with the sign that opens a character elsewhere.
  void readWord() {
    const bool isNumber = std::isdigit(static_cast<unsigned char>(text_[at_])) != 0;
    const std::size_t start = at_;
    while (at_ < text_.size() && (isWordCharacter(text_[at_]) || (isNumber && text_[at_] == '\''))) ++at_;
    const std::string_view word = text_.substr(start, at_ - start);
    if (word.ends_with('R') && word.size() < 4 && isNext("\"")) {
      skipRawLiteral();
    } else {
      tokens_.emplace_back(word);
    }
  }

  void skipRawLiteral() {
    const std::size_t open = std::min(text_.find('(', at_), text_.size());
    const std::string end = ")" + std::string(text_.substr(at_ + 1, open - at_ - 1)) + "\"";
    skipPast(end);
    tokens_.emplace_back("\"");
  }

  std::string_view text_;
  std::size_t at_ = 0;
  bool lineStarts_ = true;
  std::vector<std::string> tokens_;
};

// The qualified names of all types that a source text defines outside of types and functions.
class DefinedTypes {
 public:
  explicit DefinedTypes(std::string_view text) : tokens_(Tokens(text).take()) {
    while (at_ < tokens_.size()) readOne();
  }

  std::vector<std::string> take() { return std::move(names_); }

 private:
  const std::string& token(std::size_t index) const {
    static const std::string none;
    return index < tokens_.size() ? tokens_[index] : none;
  }
  bool isWord(std::size_t index) const { return !token(index).empty() && isWordCharacter(token(index)[0]); }

  void readOne() {
    const std::string& now = token(at_);
    if (now == "namespace") {
      readNamespace();
    } else if (now == "extern" && token(at_ + 1) == "\"" && token(at_ + 2) == "{") {
      scopes_.emplace_back();
      at_ += 3;
    } else if (now == "{") {
      skipBraces();
    } else {
      if (now == "}" && !scopes_.empty()) scopes_.pop_back();
      if (now == "class" || now == "struct" || now == "union" || now == "enum") readType();
      if (now == "using" && isWord(at_ + 1) && token(pastAttributes(at_ + 2)) == "=") define(token(at_ + 1));
      if (now == "@" && token(at_ + 1) == "interface" && token(at_ + 3) == ":") define(token(at_ + 2));
      ++at_;
    }
  }

  void readNamespace() {
    std::string name;
    for (++at_; at_ < tokens_.size() && token(at_) != "{"; ++at_) {
      if (token(at_) == ";") return;  // another name for one
      if (token(at_) != "inline") name += token(at_);
    }
    scopes_.push_back((name.empty() ? anonymous : name) + std::string("::"));
    ++at_;
  }

  void skipBraces() {
    int depth = 0;
    do {
      if (token(at_) == "{") ++depth;
      if (token(at_) == "}") --depth;
      ++at_;
    } while (depth > 0 && at_ < tokens_.size());
  }

  // Behind [[...]], alignas(...) and __attribute__((...)).
  std::size_t pastAttributes(std::size_t index) const {
    for (;;) {
      const std::string& now = token(index);
      if (now == "[[") {
        while (index < tokens_.size() && token(index) != "]") ++index;
        index += 2;
      } else if (now == "alignas" || now == "__attribute__") {
        int depth = 0;
        do {
          ++index;
          if (token(index) == "(") ++depth;
          if (token(index) == ")") --depth;
        } while (depth > 0 && index < tokens_.size());
        ++index;
      } else {
        return index;
      }
    }
  }

  // A forward declaration, a specialization and a member of another type have no "{", ":" or "final" here.
  void readType() {
    std::size_t name = at_ + 1;
    if (token(at_) == "enum" && (token(name) == "class" || token(name) == "struct")) ++name;
    name = pastAttributes(name);
    if (!isWord(name)) return;
    const std::string& next = token(name + 1);
    if (next != "{" && next != ":" && next != "final") return;
    std::size_t end = name + 1;
    while (end < tokens_.size() && token(end) != "{" && token(end) != ";") ++end;
    if (token(end) == "{") define(token(name));
    at_ = name;  // what "enum class" leads to is no class of its own
  }

  void define(const std::string& name) {
    std::string qualified;
    for (const std::string& scope : scopes_) qualified += scope;
    names_.push_back(qualified + name);
  }

  std::vector<std::string> tokens_;
  std::size_t at_ = 0;
  std::vector<std::string> scopes_;
  std::vector<std::string> names_;
};

struct Source {
  std::string path;  // relative to the root
  std::string text;
};

// Of the system that alone compiles a file; empty: of every system.
std::string systemOf(const std::string& path) {
  if (path.find("macos/") != std::string::npos) return "macos";
  if (path.find("linux/") != std::string::npos || path.find("/qt/") != std::string::npos) return "linux";
  return "";
}

bool mayMeet(const std::string& path, const std::string& other) {
  const std::string one = systemOf(path);
  const std::string two = systemOf(other);
  return one.empty() || two.empty() || one == two;
}

// One sentence for every type whose qualified name an earlier one has already.
std::vector<std::string> doubledTypes(const std::vector<Source>& sources) {
  std::vector<std::string> doubled;
  std::map<std::string, std::vector<std::string>> placesOf;
  for (const Source& source : sources) {
    for (const std::string& name : DefinedTypes(source.text).take()) {
      const bool ownOfFile = name.find(anonymous) != std::string::npos;
      std::vector<std::string>& places = placesOf[ownOfFile ? source.path + " " + name : name];
      for (const std::string& place : places) {
        if (mayMeet(place, source.path))
          doubled.push_back(name + " is defined in " + place + " and in " + source.path);
      }
      places.push_back(source.path);
    }
  }
  return doubled;
}

TEST(TypeNames, EveryQualifiedNameIsGivenOnce) {
  std::vector<Source> sources;
  std::size_t types = 0;
  for (const std::string& file : filesEndingIn({".h", ".cpp", ".mm"})) {
    sources.push_back({file, textOfFile(sourceRoot / file)});
    types += DefinedTypes(sources.back().text).take().size();
  }
  EXPECT_GT(types, 300U);
  EXPECT_THAT(doubledTypes(sources), IsEmpty());
}

TEST(TypeNames, ADefinitionIsSeenWhereverAndHoweverItIsWritten) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"struct A {};\nclass B final : public A {};\nunion C { int i; };", {"A", "B", "C"}},
      {"enum D { one };\nenum class E : int { two };\nenum struct F { three };", {"D", "E", "F"}},
      {"using G = int;\ntemplate <class T> using H = T;\nusing std::string;\nusing namespace std;",
       {"G", "H"}},
      {"template <class T, class U = int>\nclass [[nodiscard]] I { struct Inner {}; };", {"I"}},
      {"struct alignas(8) J {};\nstruct __attribute__((packed)) K {};", {"J", "K"}},
      {"namespace a::b { inline namespace c { struct L {}; } struct M {}; }\nstruct N {};",
       {"a::b::c::L", "a::b::M", "N"}},
      {"namespace a { namespace { struct O {}; } }", {"a::(anonymous)::O"}},
      {"extern \"C\" { struct P {}; }\nnamespace fs = std::filesystem;\nstruct Q {};", {"P", "Q"}},
      {"@interface R : NSObject\n@end\n@interface R ()\n@end\n@class S;", {"R"}},
      {"class T;\nenum U : int;\nstruct V v;\nstruct A::W {};\ntemplate <> struct X<int> {};", {}},
      {"void f(struct stat s) { struct Y {}; enum { z }; }\nint i = [] { struct Z {}; return 1; }();", {}},
      {"// struct A {};\n/* struct B {}; */\n#define C \\\n  struct C {};\nconst char* d = \"\\\"struct D {};\";",
       {}},
      {"const char* e = R\"x({ \" )\" struct E {};)x\";\nint f = 1'000; char g = '{';\nstruct H {};", {"H"}},
  };
  for (const auto& [text, names] : cases) EXPECT_EQ(DefinedTypes(text).take(), names) << text;
}

TEST(TypeNames, OnlyTypesThatCanMeetInAProgramAreADouble) {
  const char* named = "namespace tarnwick { struct Stack {}; }";
  const char* hidden = "namespace tarnwick { namespace { struct Stack {}; } }";
  const std::tuple<const char*, const char*, const char*, const char*, std::size_t> cases[] = {
      {"diagnosis/a.h", named, "app/b.h", named, 1},
      {"diagnosis/a.h", named, "app/b.cpp", "namespace tarnwick {\nusing Stack = int;\n}", 1},
      {"diagnosis/a.h", named, "app/b.h", "namespace tarnwick::panel { struct Stack {}; }", 0},
      {"diagnosis/a.cpp", hidden, "app/b.cpp", hidden, 0},
      {"diagnosis/a.cpp", hidden, "diagnosis/a.cpp", hidden, 1},
      {"diagnosis/a.h", named, "app/b.cpp", hidden, 0},
      {"app/linux/a.h", named, "app/macos/a.h", named, 0},
      {"app/panel/qt/a.h", named, "app/panel/macos/a.h", named, 0},
      {"app/panel/qt/a.h", named, "app/linux/a.h", named, 1},
      {"app/a.h", named, "app/macos/a.h", named, 1},
  };
  for (const auto& [one, text, two, other, doubles] : cases)
    EXPECT_THAT(doubledTypes({{one, text}, {two, other}}), SizeIs(doubles)) << one << " " << two << other;
}

}  // namespace
}  // namespace tarnwick
