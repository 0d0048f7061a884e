// The sentences, evidence lines and remedies that rules about long-running or busy processes share. Nothing
// here fails: a fact that is missing drops its words.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "diagnosis/process_tree.h"
#include "diagnosis/surroundings.h"
#include "records/finding.h"
#include "records/snapshot.h"

namespace tarnwick {

// One sentence that says who started the work, `age` seconds ago.
std::string startedBy(const Starter& start, double age, const std::optional<ClaudeWork>& work,
                      Surroundings& surroundings);

// The evidence under a card: the lines of `more`, then what is known of the starter, the session and the
// repository, joined by line feeds.
std::string facts(const std::optional<std::string>& who, const std::optional<Git>& git,
                  const std::optional<ClaudeWork>& work, std::vector<std::string> more);

// The process's name and its arguments in one line: every run of white space is one blank.
std::string commandLine(const Proc& proc);

// A command line of at most 60 characters; of a longer one the beginning and "…".
std::string shortenedCommand(const std::string& command);

// The nearest folder from `path` upward that holds ".git", but never the home directory or a folder with a
// name as short; `path` itself when there is none, or when it lies in the home directory's Library.
std::string projectRoot(const std::string& path, Surroundings& surroundings);

// Asks the process to end, under the given label; forces it when it was asked before (it is in `termed`).
Action stop(const Proc& proc, const std::set<Pid>& termed, std::string label);

// The signal that `stop` sends.
Signal stopSignal(const Proc& proc, const std::set<Pid>& termed);

// How the script that the process runs begins, with a line that names it; absent when it runs none, or one
// that cannot be read.
std::optional<std::string> scriptHead(const Proc& proc, Surroundings& surroundings);

// Is `path` inside the home directory's Library, where programs keep their own files?
bool isInLibrary(const std::string& path, const Self& self);

}  // namespace tarnwick
