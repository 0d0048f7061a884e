// The plain surfaces that the panel is laid out on. Their colours follow the appearance: each is looked up
// when the surface is drawn.
#pragma once

#import <AppKit/AppKit.h>

#include <optional>

#include "app/panel/panel_tree.h"

// A view whose content grows downwards from the top.
__attribute__((objc_runtime_name("TarnwickFlippedView")))
@interface FlippedView : NSView
@end

// What a picture of the panel is drawn on: the background colour of a window.
__attribute__((objc_runtime_name("TarnwickBackdrop")))
@interface Backdrop : NSView
@end

// A rounded surface in a transparent colour.
__attribute__((objc_runtime_name("TarnwickBoxView")))
@interface BoxView : FlippedView

- (instancetype)initWithBox:(const tarnwick::panel::Box&)box;

@end

// Scrolls vertically. Its scroller lies over the list and hides itself, also where the user's scrollers
// otherwise take their own room: the list would be wider than what is left.
__attribute__((objc_runtime_name("TarnwickListView")))
@interface ListView : NSScrollView
@end
