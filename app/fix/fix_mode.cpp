#include "app/fix/fix_mode.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/cli/output.h"
#include "app/cli/prompt.h"
#include "app/cli/terminal_text.h"
#include "app/fix/offers.h"
#include "app/fix/remedy_progress.h"
#include "app/fix/told_services.h"
#include "app/model/model.h"
#include "app/model/same_thread_executor.h"

namespace tarnwick {
namespace {

// What the user wants after a question.
enum class Wish { leave, goOn, checkAgain };

// On a thread of its own, while whatever goes on goes on.
void sayLastWords(RemedyProgress& progress) {
  const std::string words = progress.lastWords();
  if (words.empty()) return;
  leaveLine();
  complain("stopped." + words);
}

class FixSession {
 public:
  explicit FixSession(const ProgramRun& run)
      : run_(run),
        outside_(run.outside()),
        machine_(outside_, titlesOf(run.words)),
        desktop_(outside_.targets.hasDesktop() ? Desktop::there : Desktop::absent) {
    run.beforeTheEnd([progress = progress_] { sayLastWords(*progress); });
    checkAgain();
  }

  // The user chooses until they leave.
  int chooseAndDo() {
    while (model_.snap()) {
      const NumberedReport report = numbered(currentLines(), desktop_);
      print(report.lines);
      say("");
      if (report.offers.empty()) return say("There is nothing to choose here.");
      Wish wish = Wish::goOn;
      while (wish == Wish::goOn) wish = chooseOnce(report.offers);
      if (wish == Wish::leave) return 0;
    }
    return complainUnseen();
  }

  // The one remedy that was named.
  int doThat(const std::string& command) {
    if (!model_.snap()) return complainUnseen();
    for (const Offer& offer : numbered(currentLines(), Desktop::there).offers) {
      if (offer.action.id() != command) continue;
      if (desktop_ == Desktop::absent && needsDesktop(offer.action.fix))
        return complain("that remedy opens a window, and there is no desktop.");
      if (run_.words.dryRun) return say("Would do: " + described(offer));
      if (!run_.words.yes && !isConfirmed(offer)) return 1;
      return carryOut(offer) ? 0 : 1;
    }
    return complain("there is no such remedy now: “" + harmlessInLine(command) + "”. Nothing was done.");
  }

 private:
  std::vector<ReportLine> currentLines() const { return reportLines(*model_.snap(), model_.found(), {}); }

  void checkAgain() {
    model_.refresh(true);
    executor_.run();
  }

  int say(const std::string& line) const {
    return run_.look ? print({{.text = line}}) : run_.print(harmlessInLine(line) + "\n");
  }
  int print(const std::vector<TintedLine>& lines) const {
    return run_.printLaidOut(laidOut(lines, *run_.look));
  }

  // Only on a terminal. A question, behind which the answer is typed.
  std::optional<std::string> ask(const std::string& question) const {
    std::string text = laidOut({{.text = question}}, *run_.look);
    text.back() = ' ';
    if (run_.printLaidOut(text) != 0) return std::nullopt;
    std::optional<std::string> answer = readAnswer();
    if (!answer) run_.printLaidOut("\n");
    return answer;
  }

  Wish chooseOnce(const std::vector<Offer>& offers) {
    const std::optional<std::string> answer = ask("Number of a remedy, r to check again, Enter to leave:");
    if (!answer || answer->empty()) return Wish::leave;
    if (*answer == "r") return checkAgain(), Wish::checkAgain;
    const std::size_t number = numberOf(*answer);
    if (number < 1 || number > offers.size()) {
      say("There is no remedy of the number “" + *answer + "”.");
      return Wish::goOn;
    }
    const Offer& offer = offers[number - 1];
    if (run_.words.dryRun) return say("Would do: " + described(offer)), Wish::goOn;
    if (!isConfirmed(offer)) return Wish::goOn;
    carryOut(offer);
    say("");
    return Wish::checkAgain;
  }

  bool isConfirmed(const Offer& offer) const {
    const std::optional<std::string> answer = ask(described(offer) + " Do it? [y/N]");
    const bool isYes = answer == "y" || answer == "Y" || answer == "yes";
    if (!isYes) say("Nothing was done.");
    return isYes;
  }

  // False when the remedy says that it did not work.
  bool carryOut(const Offer& offer) {
    model_.run(offer.action, offer.finding);
    if (model_.busy()) services_.waitWith(model_.note()->text);
    executor_.run();
    const std::optional<Note> note = model_.note();
    for (std::size_t at = 0, end = 0; note && end != std::string::npos; at = end + 1) {
      end = note->text.find('\n', at);
      say(note->text.substr(at, end - at));
    }
    progress_->told();
    return note && note->color != NoteColor::orange;
  }

  const ProgramRun& run_;
  const Outside outside_;
  Machine machine_;
  const Desktop desktop_;
  const std::shared_ptr<RemedyProgress> progress_ =
      std::make_shared<RemedyProgress>();  // may be asked at the very end
  ToldServices services_{machine_, *progress_};
  SameThreadExecutor executor_;
  Model model_{executor_, services_, [](const std::string&) {}};
};

}  // namespace

int runFix(const ProgramRun& run) {
  const std::optional<std::string>& command = run.words.fixCommand;
  if (command && command->empty()) return complain("an empty text names no remedy.");
  if (!command && run.words.yes)
    return complain("--yes needs the remedy that is meant: --fix \"COMMAND\" --yes.");
  const bool mayAsk = canAsk();
  const bool hasToAsk = !command || !(run.words.yes || run.words.dryRun);
  if (hasToAsk && !mayAsk)
    return complain("there is no terminal to ask on, so nothing was done. Give the remedy and --yes.");
  FixSession session(run);
  return command ? session.doThat(*command) : session.chooseAndDo();
}

}  // namespace tarnwick
