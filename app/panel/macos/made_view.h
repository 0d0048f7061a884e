// A view that a painter has just made, at its final size. Sizes and places are of alignment rectangles, which
// leave out what a control draws around itself, such as the shadow of a button.
#pragma once

#import <AppKit/AppKit.h>

#include <cmath>

#include "app/panel/arrangement.h"

namespace tarnwick::panel {

struct MadeView {
  NSView* view;
  Extent size;
};

// As large as its frame, in whole points.
inline MadeView asFramed(NSView* view) {
  const NSSize size = [view alignmentRectForFrame:view.frame].size;
  return {view, {std::ceil(size.width), std::ceil(size.height)}};
}

// Adds the view to `parent`, which is flipped: the place is of the upper left corner.
inline void place(const MadeView& made, Spot spot, NSView* parent) {
  [parent addSubview:made.view];
  made.view.frame =
      [made.view frameForAlignmentRect:NSMakeRect(spot.x, spot.y, made.size.width, made.size.height)];
}

}  // namespace tarnwick::panel
