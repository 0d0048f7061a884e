#include "app/model/model.h"

#include <utility>

#include "app/cli/terminal_text.h"
#include "diagnosis/changes.h"
#include "records/checked.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

// So long does a note outlive the action that it tells of, in seconds.
constexpr double noteSeconds = 120;

constexpr const char* doneIcon = "checkmark.circle.fill";
constexpr const char* troubleIcon = "exclamationmark.triangle.fill";
constexpr const char* unseenNote = "Its processes or its memory cannot be read.";
constexpr const char* settingsOpen = "System Settings is open.";
constexpr const char* pageOpen = "The page is open in your browser.";

template <class Kind>
bool is(const Fix& fix) {
  return std::holds_alternative<Kind>(fix.kind);
}

// Opens something and changes nothing on the machine: no check has to follow.
bool onlyOpens(const Fix& fix) { return is<OpenSettings>(fix) || is<OpenTab>(fix); }

// What a remedy that reported no error has achieved, judged by the check after it.
std::string achieved(const Fix& fix, const Finding& before, const std::vector<Finding>& found) {
  if (is<AskAutomation>(fix)) return "Allowed. The card below now shows tabs that you can close.";
  if (is<CloseDuplicateTabs>(fix))
    return "Closed the duplicate tabs. To bring one back, press Cmd-Shift-T in the browser.";
  const std::optional<std::uint64_t> freed = freedSince(before, found);
  return freed ? "Done. Freed " + size(*freed) + "."
               : "Done, but it is still there. Refresh in a few seconds.";
}

struct Outcome {
  Check check;
  Note note;
};

Outcome carryOut(ModelServices& services, const Fix& fix, const Finding& finding,
                 const std::set<Pid>& termed) {
  const std::optional<std::string> error = services.apply(fix);
  services.resetCaches();
  Check check = services.check(termed);
  Note note = Note::result(error, achieved(fix, finding, check.found), services.now());
  return {std::move(check), std::move(note)};
}

}  // namespace

Note Note::result(const std::optional<std::string>& error, const std::string& ok, Timestamp at) {
  if (error) return {*error, troubleIcon, NoteColor::orange, at};
  return {ok, doneIcon, NoteColor::green, at};
}

Model::Model(Executor& executor, ModelServices& services, CopyText copyText)
    : executor_(executor), services_(services), copyText_(std::move(copyText)) {}

const std::optional<Snapshot>& Model::snap() const { return requireMainThread(), snap_; }
const BiggestUsers& Model::users() const { return requireMainThread(), users_; }
const std::vector<Finding>& Model::found() const { return requireMainThread(), found_; }
bool Model::busy() const { return requireMainThread(), busy_; }
const std::optional<Note>& Model::note() const { return requireMainThread(), note_; }
const Guesses& Model::guesses() const { return requireMainThread(), guesses_; }
const std::optional<std::string>& Model::openCard() const { return requireMainThread(), openCard_; }
const std::set<std::string>& Model::asked() const { return requireMainThread(), asked_; }
const std::set<Pid>& Model::termed() const { return requireMainThread(), termed_; }

Model::Subscription Model::onChange(std::function<void()> observer) {
  requireMainThread();
  auto subscription = std::make_shared<const std::function<void()>>(std::move(observer));
  observers_.emplace_back(subscription);
  return subscription;
}

void Model::requireMainThread() const {
  if (!executor_.isMainThread()) fault("the model is used off the main thread");
}

void Model::announceChange() {
  requireMainThread();
  std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
  // A copy, because an observer may subscribe somebody or let go of a subscription.
  for (const auto& watched : std::vector(observers_)) {
    if (const Subscription observer = watched.lock()) (*observer)();
  }
}

template <class T, class Value>
void Model::publish(T& field, Value&& value) {
  announceChange();
  field = std::forward<Value>(value);
}

template <class Work, class Then>
void Model::startWork(Work work, Then then) {
  // The model may be gone while the work runs: nothing of it is touched before that is known.
  executor_.background([alive = std::weak_ptr(alive_), &executor = executor_, &services = services_,
                        work = std::move(work), then = std::move(then)] {
    executor.main([alive, then, result = work(services)]() mutable {
      if (!alive.expired()) then(std::move(result));
    });
  });
}

void Model::refresh(bool fresh) {
  requireMainThread();
  if (busy_) return;
  publish(busy_, true);
  if (fresh) services_.resetCaches();
  startWork([termed = termed_](ModelServices& services) { return services.check(termed); },
            [this](Check check) {
              const bool keep = note_ && secondsBetween(note_->at, services_.now()) < noteSeconds;
              show(std::move(check), keep ? note_ : std::nullopt);
            });
}

void Model::show(Check check, std::optional<Note> note) {
  if (!check.seen) return showUnseen();
  check.snapshot.procs.clear();
  check.snapshot.children.clear();
  check.snapshot.others.clear();
  publish(snap_, std::move(check.snapshot));
  users_ = std::move(check.users);
  publish(found_, std::move(check.found));
  publish(note_, std::move(note));
  publish(busy_, false);
  services_.freeMemory();
}

// What an earlier check saw is no news either.
void Model::showUnseen() {
  publish(snap_, std::nullopt);
  users_ = {};
  publish(found_, std::vector<Finding>());
  publish(note_, Note{unseenNote, troubleIcon, NoteColor::orange, services_.now()});
  publish(busy_, false);
  services_.freeMemory();
}

void Model::run(const Action& action, const Finding& finding) {
  requireMainThread();
  if (busy_) return;
  if (onlyOpens(action.fix)) {
    open(action.fix);
  } else {
    remedy(action.fix, finding);
  }
}

void Model::open(const Fix& fix) {
  const std::optional<std::string> error = services_.apply(fix);
  publish(note_, Note::result(error, is<OpenSettings>(fix) ? settingsOpen : pageOpen, services_.now()));
  services_.resetCaches();
}

void Model::remedy(const Fix& fix, const Finding& finding) {
  publish(busy_, true);
  publish(note_, Note{is<AskAutomation>(fix) ? "Answer the macOS dialog…" : "Working…", "hourglass",
                      NoteColor::secondary, services_.now()});
  const std::vector<Pid> pids = fix.pids();
  termed_.insert(pids.begin(), pids.end());
  startWork([fix, finding,
             termed = termed_](ModelServices& services) { return carryOut(services, fix, finding, termed); },
            [this](Outcome outcome) { show(std::move(outcome.check), std::move(outcome.note)); });
}

void Model::copyReport() {
  requireMainThread();
  if (!snap_) return;
  copyText_(harmlessForClipboard(text(*snap_, found_, guesses_)));
  publish(note_, Note{"Copied the report. Paste it into a message to share it.", doneIcon, NoteColor::green,
                      services_.now()});
}

void Model::guess(const Finding& finding) {
  requireMainThread();
  if (!finding.evidence || asked_.contains(*finding.evidence)) return;
  const std::optional<std::string> executable = services_.ownExecutable();
  if (!executable) return;
  asked_.insert(*finding.evidence);
  startWork([executable = *executable, evidence = *finding.evidence](
                ModelServices& services) { return services.explainByChild(executable, evidence); },
            [this, evidence = *finding.evidence](const std::string& answer) {
              if (answer.empty()) return;
              announceChange();
              guesses_[evidence] = answer;
            });
}

void Model::setOpenCard(std::optional<std::string> id) { publish(openCard_, std::move(id)); }

}  // namespace tarnwick
