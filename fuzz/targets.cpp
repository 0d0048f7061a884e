#include "fuzz/targets.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/cli/command_line.h"
#include "app/cli/terminal_text.h"
#include "context/claude_reader.h"
#include "context/git_files.h"
#include "context/property_list_bounds.h"
#include "context/tabs.h"
#include "records/text.h"
#include "records/utf8.h"
#include "sampling/decode/app_unit.h"
#include "sampling/decode/arguments.h"
#include "sampling/decode/desktop_entry.h"
#include "sampling/decode/iso_time.h"
#include "sampling/decode/launch_command.h"
#include "sampling/decode/listeners.h"
#include "sampling/decode/memory_info.h"
#include "sampling/decode/memory_saver.h"
#include "sampling/decode/pressure.h"
#include "sampling/decode/proc_stat.h"
#include "sampling/decode/processor_times.h"
#include "sampling/decode/start_times.h"
#include "sampling/decode/thermal_zone.h"
#include "sampling/engine/engine_json.h"
#include "sampling/engine/http_reply.h"

namespace tarnwick {
namespace {

void promiseText(std::string_view text) { promise(repairUtf8(text) == text, "a text is valid UTF-8"); }

void promiseTexts(const std::vector<std::string>& texts) { std::ranges::for_each(texts, promiseText); }

std::vector<std::string> linesOf(std::string_view bytes) {
  std::vector<std::string> lines;
  while (!bytes.empty()) lines.emplace_back(takeLine(bytes));
  return lines;
}

void runArguments(std::string_view bytes) {
  promiseTexts(procArguments(bytes));
  promiseTexts(argumentsInBlock(bytes));
}

void runDesktopEntry(std::string_view bytes) {
  const auto entry = desktopEntryText(bytes, localeVariants("de_DE.UTF-8@euro"));
  if (!entry) return;
  promiseTexts({entry->name, entry->icon});  // the command is looked for as it is
  launchOf(commandWords(entry->command));
}

void runLaunch(std::string_view bytes) {
  launchOf(commandWords(bytes));
  programsOfScript(bytes, "/usr/bin/started");
}

void runEngine(std::string_view bytes) {
  const auto body = successfulBody(bytes).value_or(bytes);
  for (const Container& container : containersOf(body)) {
    promise(isPlainContainerId(container.id), "a container's id is one");
    promiseTexts({container.name, container.status, container.image});
  }
  memoryOf(body);
}

void runGitFiles(std::string_view bytes) {
  gitDirectoryFrom(bytes, "/home/dana/shop");
  promiseText(branchFrom(bytes));
  commonDirectoryFrom(bytes, "/home/dana/shop/.git");
  const auto url = originUrl(bytes);
  const RemoteParts parts = remoteParts(url ? std::string_view(*url) : bytes);
  promise(!parts.slug || std::ranges::count(*parts.slug, '/') == 1, "owner and name have one slash between");
}

void runTranscript(std::string_view bytes) {
  const auto line = newest(bytes, "ai-title", "aiTitle");
  promise(!line || line->is_object(), "a line of a transcript is an object");
}

void runPropertyList(std::string_view bytes) {
  promise(!isHarmlessPropertyList(bytes) || isBinaryPropertyList(bytes) || isXmlPropertyList(bytes),
          "only the two known forms are harmless");
}

void runTabs(std::string_view bytes) {
  const Tabs tabs = condense(urlsOfLines(bytes));
  promise(tabs.duplicates >= 0 && std::ranges::all_of(tabs.piles, [](auto& pile) { return pile.second > 0; }),
          "tabs are counted");
}

void runUtf8(std::string_view bytes) {
  const std::string repaired = repairUtf8(bytes);
  promiseText(repaired);
  promise(characterCount(firstCharacters(repaired, 5)) <= 5, "five characters at most");
}

void runTerminal(std::string_view bytes) {
  const std::string harmless = harmlessForTerminal(bytes);
  promiseText(harmless);
  promise(std::ranges::none_of(harmless, [](unsigned char c) { return (c < ' ' && c != '\n') || c == 0x7F; }),
          "no control reaches a terminal");
}

void runProcFiles(std::string_view bytes) {
  kilobyteField(bytes, "VmSwap");
  swapUsed(memoryInfo(bytes));
  procPages(bytes);
  procStat(bytes);
  residentPages(bytes);
  newestPid(bytes);
  procLinkPath(bytes);
  const CpuTicks ticks = cpuTicksFromStat(bytes);
  promise(ticks.busy <= ticks.total, "no more is busy than there is");
  promise(processorsInList(bytes) >= 0, "processors are counted");
  bootTime(bytes);
  tcpListeners(bytes);
  socketInode(bytes);
  pressureFromStalls(bytes);
  pressureFromAvailable(memoryInfo(bytes));
  appUnitFolder(bytes);
  applicationID(bytes);
}

void runThermal(std::string_view bytes) {
  ThermalZone zone;
  std::optional<std::int64_t> temperature;
  for (const std::string& line : linesOf(bytes)) {
    addTripPoint(zone, line, temperature);
    temperature = numberAlone(line);
  }
  zone.temperature = temperature;
  thermalState({zone, {}});
}

constexpr FuzzTarget targets[] = {
    {"arguments", runArguments},
    {"command_line", [](std::string_view bytes) { parseCommandLine(linesOf(bytes)); }},
    {"desktop_entry", runDesktopEntry},
    {"engine", runEngine},
    {"git_files", runGitFiles},
    {"iso_time", [](std::string_view bytes) { isoTime(bytes); }},
    {"launch", runLaunch},
    {"machine", runMachine},
    {"memory_saver", [](std::string_view bytes) { memorySaverState(bytes); }},
    {"proc_files", runProcFiles},
    {"property_list", runPropertyList},
    {"tabs", runTabs},
    {"terminal", runTerminal},
    {"thermal", runThermal},
    {"transcript", runTranscript},
    {"utf8", runUtf8},
};

}  // namespace

std::span<const FuzzTarget> fuzzTargets() { return targets; }

void promise(bool holds, std::string_view what) {
  if (holds) return;
  std::fprintf(stderr, "promised, but it does not hold: %.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

}  // namespace tarnwick
