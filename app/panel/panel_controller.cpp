#include "app/panel/panel_controller.h"

#include <algorithm>
#include <utility>

#include "app/panel/content.h"

namespace tarnwick::panel {
namespace {

constexpr double freshFor = 10;  // seconds; opening the panel checks again after that

template <class... Cases>
struct Match : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Match(Cases...) -> Match<Cases...>;

}  // namespace

PanelController::PanelController(Model& model, Executor& executor, PanelWindow& window,
                                 UserSettings& settings, Now now)
    : model_(model), executor_(executor), window_(window), settings_(settings), now_(std::move(now)) {
  state_.hasStatusItem = true;
  watch = model_.onChange([this] { modelChanges(); });
}

void PanelController::toggle() {
  if (window_.isVisible()) {
    close();
  } else {
    open();
  }
}

void PanelController::open() {
  const std::optional<Snapshot>& snap = model_.snap();
  if (!snap.has_value() || secondsBetween(snap->now, now_()) >= freshFor) model_.refresh(false);
  window_.open();
  render();
}

void PanelController::copyFreshReport() {
  open();
  copyNext = true;
  copyIfWanted();
}

void PanelController::close() { window_.close(); }

void PanelController::perform(const PanelAction& action) {
  std::visit(
      Match{
          [&](const ToggleMore&) { toggleFold(state_.showMore); },
          [&](const ToggleLeftovers&) { toggleFold(state_.showLeftovers); },
          [&](const OpenDetails& open) {
            animateNext = true;
            model_.setOpenCard(open.finding.id);
            model_.guess(open.finding);
          },
          [&](const CloseDetails&) {
            animateNext = true;
            model_.setOpenCard(std::nullopt);
          },
          [&](const RunRemedy& remedy) { model_.run(remedy.action, remedy.finding); },
          [&](const CheckAgain&) { model_.refresh(true); },
          [&](const OpenMenu&) { window_.openMenu(menu(settings_.opensAtLogin(), settings_.prTitles())); },
          [&](const CopyReport&) { model_.copyReport(); },
          [&](const ToggleLoginItem&) { settings_.setOpensAtLogin(!settings_.opensAtLogin()); },
          [&](const TogglePrTitles&) { togglePrTitles(); },
          [&](const Quit&) { window_.quit(); },
      },
      action);
}

Node PanelController::content() const {
  PanelState state = state_;
  state.visibleScreenHeight = window_.visibleScreenHeight();
  return panel::content(viewOf(model_), state, now_());
}

void PanelController::openFirstCard() {
  const std::vector<Finding>& found = model_.found();
  auto chosen =
      std::find_if(found.begin(), found.end(), [](const Finding& f) { return f.evidence.has_value(); });
  if (chosen == found.end()) chosen = found.begin();
  if (chosen == found.end()) return;
  const Finding finding = *chosen;
  model_.guess(finding);
  model_.setOpenCard(finding.id);
}

// The model tells before each change, and often tells several in one turn: one redraw comes after them all.
void PanelController::modelChanges() {
  if (renderQueued) return;
  renderQueued = true;
  executor_.main([this, alive = std::weak_ptr<const bool>(alive_)] {
    if (alive.expired()) return;
    renderQueued = false;
    render();
    copyIfWanted();
  });
}

void PanelController::render() {
  if (!window_.isVisible()) return;
  state_.noteIsNew = model_.note() != std::exchange(heard_, model_.note());
  window_.show(content(), std::exchange(animateNext, false));
  keepAgeTrue();
}

// Only the one text: a whole redraw would take away what the user has marked.
void PanelController::keepAgeTrue() {
  const auto wait = secondsToNextAge(viewOf(model_), now_());
  if (!wait.has_value()) return;
  // A timer may be a little early.
  window_.callAfter(std::max(*wait, 0.05), [this, alive = std::weak_ptr<const bool>(alive_)] {
    if (alive.expired() || !window_.isVisible()) return;
    window_.setText(ageLabel, age(viewOf(model_), now_()));
    keepAgeTrue();
  });
}

void PanelController::copyIfWanted() {
  if (model_.busy() || !std::exchange(copyNext, false)) return;
  model_.copyReport();
}

void PanelController::toggleFold(bool& flag) {
  flag = !flag;
  animateNext = true;
  render();
}

void PanelController::togglePrTitles() {
  settings_.setPrTitles(!settings_.prTitles());
  if (settings_.prTitles()) model_.refresh(true);
}

}  // namespace tarnwick::panel
