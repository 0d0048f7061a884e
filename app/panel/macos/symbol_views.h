// Symbols, file icons and the sign of work in progress as views. Main thread.
#pragma once

#import "app/panel/macos/made_view.h"

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

MadeView makeSymbol(const Symbol& symbol);
MadeView makeSpinner(const Spinner& spinner);

// Readers of the screen skip the view and what is in it.
void hideFromReaders(NSView* view);

// Null where this release of the system does not have the symbol.
NSImage* symbolImage(const std::string& name, double pointSize, Symbol::Weight weight);

}  // namespace tarnwick::panel
