// Where a mode's text goes.
#pragma once

#include <string_view>

namespace tarnwick {

// Writes a text to standard output: harmless for a terminal, byte for byte into a pipe or file. The
// result is the process's exit status: 0, also when the reader closed its end; 1 when the text could not
// be written, after one sentence on standard error.
int printText(std::string_view text);

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
  bool shown_;
};

}  // namespace tarnwick
