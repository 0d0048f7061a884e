// How much of what other programs say is kept, and believed. Each foreign text has a longest length where it
// enters, each list a longest count: whatever stands outside, a check stays small and its report readable.
// Ordinary machines are far below each of them. Lengths are bytes of UTF-8; longer texts are cut between
// characters. Pure.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tarnwick {

// More memory than any machine has, in bytes: a larger figure about one process, container or machine is
// wrong.
inline constexpr std::uint64_t mostBelievedBytes = std::uint64_t{1} << 48U;

// The figure, or 0 for "unknown" when nothing can be that large.
constexpr std::uint64_t believed(std::uint64_t bytes) { return bytes > mostBelievedBytes ? 0 : bytes; }

// JSON of other programs nests a handful of levels.
inline constexpr std::size_t deepestJson = 64;

// A container engine's replies: a list of some thousand containers, and the statistics of one of them, of
// which several are read at once.
inline constexpr std::size_t mostListReply = std::size_t{4} << 20U;
inline constexpr std::size_t mostOtherReply = std::size_t{512} << 10U;

// Containers that are looked at, and those of them that are listed by name, the biggest; the others count.
inline constexpr std::size_t mostContainers = 32'768;
inline constexpr std::size_t mostListedContainers = 512;
inline constexpr std::size_t longestContainerText = 255;  // its name, or its state
inline constexpr std::size_t longestImage = 512;

// Chrome's settings: some hundred kilobytes are usual.
inline constexpr std::size_t mostChromeSettings = std::size_t{4} << 20U;

// The command line of a process: one argument, all of them, and those of all processes. Each argument counts
// some bytes more than its text has, so that empty ones count too. Paths fit whole. Past the last limit a
// process keeps the beginning of its command line.
inline constexpr std::size_t longestArgument = 4'096;
inline constexpr std::size_t longestCommandLine = 32'768;
inline constexpr std::size_t bytesPerArgument = 32;
inline constexpr std::size_t mostProcessTexts = std::size_t{8} << 20U;  // command lines and paths
inline constexpr std::size_t fewestProcessTexts = 512;  // of one process, whatever others have
inline constexpr std::size_t longestServerTool = 100;   // of a program that gives a server its kind

// The list of the users that the system knows itself, and the name of one.
inline constexpr std::size_t mostAccounts = std::size_t{1} << 20U;
inline constexpr std::size_t longestAccountName = 255;

// Names in a folder, desktop entries, and the texts in one of those.
inline constexpr std::size_t mostFolderEntries = 65'536;
inline constexpr std::size_t mostDesktopEntries = 2'048;
inline constexpr std::size_t longestEntryName = 255;
inline constexpr std::size_t longestEntryText = 4'096;  // a file's path, or what starts it

// Simulators by name, the list that one keeps about itself, and its name there.
inline constexpr std::size_t mostNamedSimulators = 64;
inline constexpr std::size_t largestPropertyList = 65'536;
inline constexpr std::size_t longestDeviceName = 255;

// Tabs of one browser, as a script prints their addresses.
inline constexpr std::size_t mostTabs = 10'000;

// Characters of a branch, a commit, a session, a job or a title; names are far below it, and the panel lays
// out this much at once.
inline constexpr std::size_t longestName = 4'096;

// What a tool may print.
inline constexpr std::size_t mostToolOutput = std::size_t{4} << 20U;

}  // namespace tarnwick
