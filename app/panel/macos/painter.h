// Makes views of a panel tree. Decides nothing: sizes follow from the tree, the fonts and the width. Main
// thread; colours that are looked up on the way are of the appearance that is current for drawing.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

#import "app/panel/macos/control_views.h"
#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

using Perform = std::function<void(const PanelAction&)>;

struct Painting {
  NSView* view = nil;                                // constrained to its own size; nil: nothing painted
  NSArray<Target*>* targets = nil;                   // of its controls; to be kept as long as the view
  NSDictionary<NSString*, NSView*>* controls = nil;  // and texts that change, by the tree's ids
  NSScrollView* list = nil;                          // nil: nothing scrolls
};

// `perform` is called from clicks, and must outlive the painting.
Painting paint(const Node& node, const Perform& perform);

}  // namespace tarnwick::panel
