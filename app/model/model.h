// The state of the running application: the latest check, what is going on, and the answers so far. The
// panel watches it. Everything here, reading included, belongs to the main thread; from any other thread it
// is a fault. Checks, remedies and guesses run in the background and come back through the executor;
// nothing here waits for them. A failed remedy is a note, a failed guess is nothing.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/model/executor.h"
#include "app/model/model_services.h"
#include "diagnosis/report.h"
#include "records/finding.h"
#include "records/snapshot.h"

namespace tarnwick {

// What a colour is for; the painter knows the system's colour for it.
enum class NoteColor {
  green,     // it worked
  orange,    // it did not
  secondary  // it is under way
};

// The one-line banner after an action.
struct Note {
  std::string text;
  std::string icon;  // system symbol name
  NoteColor color = NoteColor::green;
  Timestamp at;  // when it was made

  // The outcome of a remedy: the error's text when there is one, else `ok`.
  static Note result(const std::optional<std::string>& error, const std::string& ok, Timestamp at);

  bool operator==(const Note&) const = default;
};

class Model {
 public:
  // Lives as long as somebody wants to be told; letting go of it ends the telling. May outlive the model.
  using Subscription = std::shared_ptr<const std::function<void()>>;

  // Replaces what is on the pasteboard by a plain text.
  using CopyText = std::function<void(const std::string&)>;

  // All must outlive the model. The executor may still run this model's background tasks when the model is
  // gone; their results are then dropped.
  Model(Executor& executor, ModelServices& services, CopyText copyText);

  // Published values. Observers are told before each change takes effect, so they still read the old value.
  const std::optional<Snapshot>& snap() const;         // latest check; stored without its processes; absent
                                                       // too when it could not see the machine
  const std::vector<Finding>& found() const;           // its findings, in pipeline order
  bool busy() const;                                   // a check or a remedy runs; no second one starts
  const std::optional<Note>& note() const;             // banner of the last action
  const Guesses& guesses() const;                      // the language model's answers, by evidence text
  const std::optional<std::string>& openCard() const;  // id of the finding whose card is open

  // Of the check that snap() is of; changes with it.
  const BiggestUsers& users() const;

  // Plain values, only growing.
  const std::set<std::string>& asked() const;  // evidence texts that were asked about
  const std::set<Pid>& termed() const;         // processes that a remedy was aimed at

  // Calls `observer` before every change of a published value.
  [[nodiscard]] Subscription onChange(std::function<void()> observer);

  // Starts a check; `fresh` asks Docker and the browsers again. Refused while busy.
  void refresh(bool fresh);

  // Carries out the action of that finding's card, then checks again. Refused while busy.
  void run(const Action& action, const Finding& finding);

  // Puts the text report on the pasteboard; nothing happens before the first check.
  void copyReport();

  // Asks once per evidence text what the process does.
  void guess(const Finding& finding);

  // Opens that card of the panel; absent: closes the one that is open.
  void setOpenCard(std::optional<std::string> id);

 private:
  void requireMainThread() const;
  void announceChange();

  // Announces the change, then makes it.
  template <class T, class Value>
  void publish(T& field, Value&& value);

  // Runs `work(services)` in the background, then `then(its result)` on the main thread.
  template <class Work, class Then>
  void startWork(Work work, Then then);

  void show(Check check, std::optional<Note> note);
  void showUnseen();
  void open(const Fix& fix);
  void remedy(const Fix& fix, const Finding& finding);

  Executor& executor_;
  ModelServices& services_;
  const CopyText copyText_;
  std::optional<Snapshot> snap_;
  BiggestUsers users_;
  std::vector<Finding> found_;
  bool busy_ = false;
  std::optional<Note> note_;
  Guesses guesses_;
  std::optional<std::string> openCard_;
  std::set<std::string> asked_;
  std::set<Pid> termed_;
  std::vector<std::weak_ptr<const std::function<void()>>> observers_;
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);  // gone with the model
};

}  // namespace tarnwick
