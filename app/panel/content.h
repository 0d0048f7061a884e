// Builds the panel as a tree of plain values: what it looks at, its own few flags, and the functions that
// make the tree. All decisions about what is shown are made here; a painter only makes views of the result.
// Pure functions, cheap enough to run on every change.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/model/model.h"
#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

// A look at the model's published values; valid as long as what it refers to, and unchanged for that time.
struct PanelView {
  const std::optional<Snapshot>& snap;
  const std::vector<Finding>& found;
  bool busy = false;
  const std::optional<Note>& note;
  const Guesses& guesses;
  const std::optional<std::string>& openCard;
  const BiggestUsers* users = nullptr;  // whom the chips name; null: nobody
};

// Main thread, as everything of the model.
inline PanelView viewOf(const Model& model) {
  return {model.snap(),    model.found(),    model.busy(),  model.note(),
          model.guesses(), model.openCard(), &model.users()};
}

struct PanelState {
  bool showMore = false;                      // the "More causes" fold is open
  bool showLeftovers = false;                 // the "Left running" fold is open
  bool hasStatusItem = false;                 // false: drawn into a picture, which shows everything
  std::optional<double> visibleScreenHeight;  // points of the panel's screen; absent: there is none
  bool noteIsNew = false;                     // nobody has heard the note yet
};

// The whole panel, 400 points wide.
Node content(const PanelView& view, const PanelState& state, Timestamp now);

// What the footer says of the age of what is shown, in the label of this id.
inline constexpr const char* ageLabel = "age";
std::string age(const PanelView& view, Timestamp now);

// Seconds until age() says something else by itself; absent: it does not.
std::optional<double> secondsToNextAge(const PanelView& view, Timestamp now);

// The menu behind the footer's last button, top to bottom.
std::vector<MenuItem> menu(bool opensAtLogin, bool prTitles);

}  // namespace tarnwick::panel
