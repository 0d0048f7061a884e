#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/cli/command_line.h"
#include "app/cli/help.h"
#include "app/cli/output.h"
#include "app/cli/terminal_text.h"
#include "app/explain/language_model.h"
#include "app/modes.h"
#include "app/panel/panel_jobs.h"
#include "app/program/own_process.h"
#include "system/environment.h"
#include "system/files.h"
#include "system/posix/file_answers.h"
#include "system/posix/file_worker.h"
#include "system/posix/replaced_file.h"
#include "system/self.h"
#include "system/small_file.h"

namespace tarnwick {
namespace {

// The words come from outside: whatever they hold, they make one line and do nothing to a terminal.
void complainUnknownWords(std::vector<std::string> words) {
  for (std::string& word : words) word = harmlessInLine(word);
  complain(unknownWordsText(words));
}

// By a process of its own, which finishes what it has begun whatever ends this one. A device or a pipe is no
// file that another one could take the place of.
bool writePicture(const std::string& path, const std::string& bytes) {
  constexpr double seconds = 3'600;  // who waits for a slow disk can end the program
  if (pathExists(path) && !isRegularFile(path)) return writeInto(path, bytes);
  FileAnswer written;
  FileWorker writer(ownExecutable().value_or(""));
  writer.ask({.kind = FileQuestion::Kind::replace, .path = path, .content = bytes}, seconds, written);
  return written.has_value();
}

int drawPanel(const ProgramRun& run) {
  const auto check = run.words.live ? std::optional(liveCheck(run)) : demoCheck(run);
  if (!check) return printUnknownScenario(run);
  if (!check->seen) return complainUnseen();
  panel::writePanelImage(
      {.snapshot = check->snapshot,
       .found = check->found,
       .dark = run.words.dark,
       .open = run.words.open,
       .write = [&run](const std::string& bytes) { return writePicture(*run.words.imagePath, bytes); }});
  return 0;  // also when the picture could not be drawn or written
}

int showApplication(const ProgramRun& run, std::optional<RealOutside>& real) {
  const Outside outside = run.outside();
  Machine machine(outside, titlesOf(run.words), Checks::many, panel::namedUsers);
  return panel::showApplication({.makeModel =
                                     [&](Executor& executor, Model::CopyText copyText) {
                                       return std::make_unique<Model>(executor, machine, std::move(copyText));
                                     },
                                 .now = [&] { return machine.now(); },
                                 .settings = &outside.settings,
                                 .leaveNow =
                                     [&](int status) {
                                       real->endTools();
                                       std::_Exit(status);
                                     },
                                 .atTheEnd = [&](auto act) { real->atTheEnd(std::move(act)); },
                                 .exercise = run.words.exercise});
}

// The report is the last thing that its mode does. What it was made from lies on the stack above and goes
// with the process, whose memory the system takes back at once: to give back many thousands of texts one by
// one costs as much as a rule. Whoever looks for leaks at the end still finds all of it held.
int leaveAtOnce(int status) { std::exit(status); }

int stay(int status) { return status; }

int run(const CommandLine& words) {
  if (!words.unknown.empty()) complainUnknownWords(words.unknown);
  const DistantPoints distant = distantMounts();
  const Self self = readSelf(distant);
  std::optional<RealOutside> outside;
  if (const auto wrong = wrongWords(words)) return complain(*wrong);
  const bool isLiveReport = (words.mode == Mode::print || words.mode == Mode::top) && !words.scenario;
  const ProgramRun run{
      .words = words,
      .self = self,
      .outside =
          [&] {
            outside.emplace(self, ownExecutable().value_or(""), distant);
            if (words.mode == Mode::application) outside->watchForTheEnd();
            return outside->parts();
          },
      .print = printText,
      .look = outputLook(wantsColour(environmentVariable("NO_COLOR"), environmentVariable("TERM"))),
      .leave = isLiveReport ? leaveAtOnce : stay,
      .beforeTheEnd =
          [&](std::function<void()> first) {
            outside->atTheEnd(std::move(first));
            outside->watchForTheEnd();
          }};
  if (words.mode == Mode::snapshot) return drawPanel(run);
  return words.mode == Mode::application ? showApplication(run, outside) : runTextMode(run);
}

bool mayAskModel(const CommandLine& words) {
  return words.mode == Mode::explain || (words.mode == Mode::print && words.askModel);
}

}  // namespace
}  // namespace tarnwick

int main(int argc, char** argv) {
  if (tarnwick::isFileWorker(argc, argv)) return tarnwick::serveFileQuestions();
  tarnwick::leaveSymbolicLink(argv);
  const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
  const tarnwick::CommandLine asked = tarnwick::parseCommandLine(words);
  const auto run = [asked] { return tarnwick::run(asked); };
  return tarnwick::mayAskModel(asked) ? tarnwick::besideMainQueue(run) : run();
}
