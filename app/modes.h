// The modes that print a text, and the checks that the panel's modes show. Main thread.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/cli/command_line.h"
#include "app/cli/output.h"
#include "app/cli/terminal_layout.h"
#include "app/demo/self_test.h"
#include "app/machine.h"

namespace tarnwick {

// One start of the program as its modes see it.
struct ProgramRun {
  CommandLine words;
  Self self;
  std::function<Outside()> outside;            // asked once, and only by modes that look at this machine
  std::function<int(std::string_view)> print;  // gives the exit status
  std::function<int(std::string_view)> printDocument = tarnwick::printDocument;  // the same of a document
  std::function<int(std::string_view)> printLaidOut =
      tarnwick::printLaidOut;             // the same of what was laid out for a terminal
  std::optional<TerminalLook> look = {};  // of standard output; absent: it is no terminal
  std::function<int(int)> leave = [](int status) { return status; };  // the last that a report does
  std::function<bool(double)> rest = waitWhileRead;  // between two checks, in seconds; false: it is over
  // Is to be done when the program is told to end, on a thread of its own; given once outside() was
  // asked.
  std::function<void(std::function<void()>)> beforeTheEnd = [](const std::function<void()>&) {};
  std::span<const ExpectedDiagnosis> expected = expectedDiagnoses();  // of the self-test
};

// What the words say about pull-request titles.
PrTitles titlesOf(const CommandLine& words);

// The sentence about those who did not answer in time.
std::string leftOutText(const std::vector<std::string>& names);

// A line on the terminal keeps whoever waits company. Who did not answer in time is named on standard error.
Check liveCheck(const ProgramRun& run);

// Absent when there is no scenario of the name that the words give.
std::optional<Check> demoCheck(const ProgramRun& run);

// Says so; the exit status.
int printUnknownScenario(const ProgramRun& run);

// Says that a live check saw nothing, about which nothing can be reported; the exit status.
int complainUnseen();

// The exit status; 0 at once for a mode that needs the panel.
int runTextMode(const ProgramRun& run);

}  // namespace tarnwick
