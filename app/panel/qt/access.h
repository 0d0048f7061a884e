// What a reader of the screen learns of the panel's own views, for which the toolkit has no word: groups,
// pictures, folds that are open or closed. Main thread.
#pragma once

#include <QAccessible>
#include <QWidget>

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

// Once, after the QApplication was made and before the first view.
void installAccess();

// The view is of that role. Before anything else is told of it: the toolkit asks once for the role.
void giveRole(QWidget* view, QAccessible::Role role);

// Names and describes a group of views; a group without a name stays silent.
void giveVoice(QWidget* view, const Spoken& spoken);

}  // namespace tarnwick::panel
