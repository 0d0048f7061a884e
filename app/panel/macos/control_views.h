// Buttons and fold rows as views. Each calls `target`, which it holds weakly. Main thread.
#pragma once

#import "app/panel/macos/made_view.h"
#import "app/panel/macos/target.h"

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

// No wider than `width`.
MadeView makeButton(const Button& button, double width, Target* target);

// Around the row, which stays a picture: the whole surface is one button.
MadeView makeFold(const Fold& fold, const MadeView& row, Target* target);

}  // namespace tarnwick::panel
