// What an operating system owes the program: every function that has no body outside the systems' folders.
// To write a third system, make a folder of its name beside each linux/ and macos/, go through this list, and
// name the folder in CMake. A POSIX system shares posix/.
//
// Declared here are those of the rooms up to context; each body is in the room named above it. Their types
// are declared ahead, so that this room needs no other one. Beside them a system owes
//   system/posix/differences.h     three calls in which POSIX systems differ; another kind of system writes
//                                  what is in posix/ anew: system/{clock,environment,self,small_file,
//                                  unix_socket}.h
//   context/browsers.h             the running browsers, or none
//   app/remedies/system_targets.h  signals, quitting applications and opening settings
//   app/settings/user_settings.h   where the user's choices are kept
//   app/program/own_process.h      what the program asks the system about itself
//   app/explain/language_model.h   the on-device model, or none, and the main thread's part in asking it
//   app/panel/panel_jobs.h         the application in the menu bar and the picture of its panel
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "records/basics.h"

namespace tarnwick {

class CheckLimits;
class Files;
class LiveMachine;
struct ToolCandidates;

// sampling/tools: the places where this system keeps its tools.
ToolCandidates toolCandidates(const std::string& home);

// sampling/engine: where a container engine of this user publishes its socket, the preferred place first;
// most do not exist.
std::vector<std::string> engineSocketPlaces(const Self& self);

// sampling: the sources of this machine. `files` are the user's own; both outlive the result.
std::unique_ptr<LiveMachine> liveMachine(const Self& self, Files& files, CheckLimits& limits);

// context: the moment in the user's language and time zone, with a medium date and a short time, such as
// "Nov 21, 2026, 5:44 AM". Never empty; any thread.
std::string localMediumDate(Timestamp moment);

// context: the text under `key` of a property list, XML or binary, whose top is a dictionary. Absent when the
// list is malformed, the key is missing or its value is no text; lists far larger than any device's are
// refused. Any thread.
std::optional<std::string> propertyListText(const std::string& list, const std::string& key);

}  // namespace tarnwick
