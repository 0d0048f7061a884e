// Where a mode's text goes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/cli/terminal_layout.h"

namespace tarnwick {

// Writes a text to standard output: harmless for a terminal, byte for byte into a pipe or file. The
// result is the process's exit status: 0, also when the reader closed its end; 1 when the text could not
// be written, after one sentence on standard error.
int printText(std::string_view text);

// The same of a text that was laid out for a terminal: it goes there as it is.
int printLaidOut(std::string_view text);

// How standard output looks; absent when it is no terminal. `colour`: when it is one.
std::optional<TerminalLook> outputLook(bool colour);

// Waits so many seconds, whatever the time of day does meanwhile; false at once when the reader of standard
// output has closed its end.
bool waitWhileRead(double seconds);

// Leaves a line on standard error that was begun by whomever, where it is a terminal.
void leaveLine();
// The same of a text of which a part is worth nothing: 1 also when the reader closed its end before it had
// all.
int printDocument(std::string_view text);

// Writes "tarnwick: ", the sentence and a line feed to standard error; the result is 1.
int complain(std::string_view sentence);

// A short line on standard error while somebody waits at a terminal; it disappears with this object. Nothing
// is written where standard error is no terminal.
class WaitingLine {
 public:
  explicit WaitingLine(std::string_view text);
  ~WaitingLine();
  WaitingLine(const WaitingLine&) = delete;
  WaitingLine& operator=(const WaitingLine&) = delete;

 private:
  const std::string text_;  // empty: not shown
};

}  // namespace tarnwick
