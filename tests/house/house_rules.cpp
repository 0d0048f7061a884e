#include "tests/house/house_rules.h"

#include <algorithm>
#include <array>
#include <regex>

namespace tarnwick {
namespace {

struct Room {
  std::string_view folder;                   // the longest folder that a path begins with is its room
  std::vector<std::string_view> mayInclude;  // folders, or single headers
};

const std::vector<Room>& rooms() {
  static const std::vector<Room> all{
      {"records/", {"records/"}},
      {"diagnosis/", {"diagnosis/", "records/"}},
      {"sampling/decode/", {"sampling/decode/", "records/"}},
      {"sampling/tools/", {"sampling/tools/", "records/"}},
      {"sampling/", {"sampling/", "records/", "context/"}},
      {"context/",
       {"context/", "records/", "diagnosis/surroundings.h", "sampling/tools/", "sampling/decode/"}},
      {"app/panel/", {"app/", "records/", "diagnosis/", "sampling/", "context/"}},
      {"app/", {"app/", "records/", "diagnosis/", "sampling/", "context/"}},
      {"bench/", {""}},
      {"tests/", {""}},
  };
  return all;
}

const Room* roomOf(std::string_view path) {
  const Room* best = nullptr;
  for (const Room& room : rooms()) {
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
  constexpr std::array<std::string_view, 7> libraries{"fmt/",   "nlohmann/", "utf8cpp/",  "date/",
                                                      "gtest/", "gmock/",    "benchmark/"};
  const bool standard = header.find_first_of("./") == std::string::npos;
  return standard || std::any_of(libraries.begin(), libraries.end(),
                                 [&](std::string_view library) { return header.starts_with(library); });
}

template <class Visit>
void forEachMatch(std::string_view text, const std::string& pattern, Visit visit) {
  const std::regex regex(pattern, std::regex::ECMAScript | std::regex::multiline);
  for (std::cregex_iterator match(text.data(), text.data() + text.size(), regex), end; match != end;
       ++match) {
    visit(*match);
  }
}

}  // namespace

std::vector<std::string> forbiddenIncludes(std::string_view path, std::string_view text) {
  std::vector<std::string> forbidden;
  const Room* room = roomOf(path);
  if (room == nullptr) return {std::string(path) + " lies in no room"};
  forEachMatch(text, R"re(^[ \t]*#[ \t]*(?:include|import)[ \t]*(["<])([^">]*)[">])re",
               [&](const std::cmatch& match) {
                 const std::string header = match[2];
                 const bool own = match[1] == "\"";
                 const bool allowed =
                     own ? std::any_of(room->mayInclude.begin(), room->mayInclude.end(),
                                       [&](std::string_view prefix) { return header.starts_with(prefix); })
                         : isPortable(header) || isSystemFolder(path) || path.starts_with("tests/") ||
                               path.starts_with("bench/");
                 if (!allowed) forbidden.push_back(std::string(path) + " may not include " + header);
               });
  return forbidden;
}

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

bool isNamed(std::string_view file, std::string_view cmakeLists) {
  const auto isWordCharacter = [](char c) {
    return std::isspace(static_cast<unsigned char>(c)) == 0 && c != '(' && c != ')' && c != '"';
  };
  for (std::size_t at = cmakeLists.find(file); at != std::string_view::npos;
       at = cmakeLists.find(file, at + 1)) {
    const std::size_t end = at + file.size();
    const bool starts = at == 0 || !isWordCharacter(cmakeLists[at - 1]);
    const bool ends = end == cmakeLists.size() || !isWordCharacter(cmakeLists[end]);
    const std::size_t line = cmakeLists.rfind('\n', at) + 1;
    const bool comment = cmakeLists.substr(line, at - line).find('#') != std::string_view::npos;
    if (starts && ends && !comment) return true;
  }
  return false;
}

}  // namespace tarnwick
