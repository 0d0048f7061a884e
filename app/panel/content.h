// Builds the panel as a tree of plain values. All decisions about what is shown are made here; a painter
// only makes views of the result. Pure functions, cheap enough to run on every change.
#pragma once

#include <vector>

#include "app/panel/panel_state.h"
#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

// The whole panel, 400 points wide.
Node content(const PanelView& view, const PanelState& state, Timestamp now);

// The menu behind the footer's last button, top to bottom.
std::vector<MenuItem> menu(bool opensAtLogin, bool prTitles);

}  // namespace tarnwick::panel
