// What the words after the program's name ask for. A pure function; the fixed order in which the modes are
// looked at is that of Mode and nowhere else.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// The modes in the order they are looked at; the first that is asked for runs.
enum class Mode {
  selfTest,
  explain,
  demo,
  bench,
  print,
  top,
  snapshot,
  help,
  version,
  fix,
  watch,
  application
};

struct CommandLine {
  Mode mode = Mode::application;
  std::optional<std::string> scenario;   // demo scenario by name, unchecked; absent: none was named
  std::optional<std::string> evidence;   // explain: the facts about one process; there in that mode
  std::optional<std::string> imagePath;  // snapshot: where the picture goes; there in that mode
  std::optional<std::string> topRows;    // top: how many rows, unchecked; absent: as many as usual
  bool top = false;                      // print, demo: the biggest users instead of the report
  bool json = false;                     // print, demo, top, watch: a document instead of text
  std::optional<std::string>
      fixCommand;  // fix: the one remedy that is meant, unchecked; absent: to be chosen
  std::optional<std::string> watchSeconds;  // watch: between two checks, unchecked; absent: as usual
  bool yes = false;                         // fix: ask no question
  bool dryRun = false;                      // fix: say what would be done, and do nothing
  bool exitCode = false;                    // print, demo: the verdict makes the exit status
  bool askModel = false;                    // print: ask the on-device model about each finding's evidence
  bool live = false;                        // snapshot: this machine instead of a demo
  bool dark = false;                        // snapshot: dark appearance
  bool open = false;                        // snapshot: first card and the leftovers fold open
  bool exercise = false;                    // application: drive the panel on a timed script
  bool prTitles = false;                    // ask for pull-request titles over the network
  std::vector<std::string> unknown;         // words that are neither an option nor a value, as they came

  bool operator==(const CommandLine&) const = default;
};

// Words are matched whole and case-sensitively; an option that takes a value takes the very next word,
// whatever it is, and is ignored when it is last; one whose value may be left out takes it unless it is an
// option or begins with two dashes. Words that mean nothing change nothing.
// What would change another mode's text starts --print where nothing else is started.
CommandLine parseCommandLine(const std::vector<std::string>& words);

inline constexpr std::size_t usualRows = 10;
inline constexpr std::size_t mostRows = 100;

// So many rows are asked for; absent when the words name no such number.
std::optional<std::size_t> rowsOf(const CommandLine& line);

// What is wrong with the words, as one sentence for whoever wrote them; absent when they can be carried out.
std::optional<std::string> wrongWords(const CommandLine& line);

}  // namespace tarnwick
