// The panel's menu as the toolkit's. Main thread.
#pragma once

#include <QMenu>
#include <vector>

#include "app/panel/qt/painter.h"

namespace tarnwick::panel {

// Adds the lines at the end of `menu`; each calls `perform` when it is chosen.
void addLines(QMenu& menu, const std::vector<MenuItem>& items, const Perform& perform);

// Gives lines that were added earlier, and are the last ones, the marks of `items`. They stay the same lines:
// a desktop that shows a copy of the menu names them when one is chosen.
void markLines(QMenu& menu, const std::vector<MenuItem>& items);

}  // namespace tarnwick::panel
