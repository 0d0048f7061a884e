#import "app/panel/macos/popup_window.h"

#import <QuartzCore/QuartzCore.h>

namespace {

constexpr CGFloat popupCorner = 14;
constexpr unsigned short escapeKey = 53;

NSView* roundedSurface(NSRect frame) {
  NSVisualEffectView* surface = [[NSVisualEffectView alloc] initWithFrame:frame];
  surface.material = NSVisualEffectMaterialMenu;
  surface.state = NSVisualEffectStateActive;
  surface.blendingMode = NSVisualEffectBlendingModeBehindWindow;
  surface.wantsLayer = YES;
  surface.layer.cornerRadius = popupCorner;
  surface.layer.masksToBounds = YES;
  return surface;
}

}  // namespace

@implementation PopupWindow

+ (instancetype)makeWindow {
  const NSRect frame = NSMakeRect(0, 0, 400, 100);  // until it is shown with its first content
  PopupWindow* window = [[PopupWindow alloc] initWithContentRect:frame
                                                       styleMask:NSWindowStyleMaskBorderless
                                                         backing:NSBackingStoreBuffered
                                                           defer:NO];
  window.title = @"Tarnwick";  // for readers of the screen
  window.opaque = NO;
  window.backgroundColor = NSColor.clearColor;
  window.hasShadow = YES;
  window.level = NSPopUpMenuWindowLevel;
  window.collectionBehavior =
      NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorTransient;
  window.releasedWhenClosed = NO;
  window.hidesOnDeactivate = NO;  // it would stay hidden until the application is active
  window.autorecalculatesKeyViewLoop = YES;
  window.contentView = roundedSurface(frame);
  return window;
}

// A borderless window refuses the keyboard by itself.
- (BOOL)canBecomeKeyWindow {
  return YES;
}

- (void)resignKeyWindow {
  [super resignKeyWindow];
  if (self.focusLeft != nil) self.focusLeft();
}

- (void)keyDown:(NSEvent*)event {
  if (event.keyCode == escapeKey) {
    [self cancelOperation:nil];
  } else {
    [super keyDown:event];
  }
}

- (void)cancelOperation:(id)__unused sender {
  if (self.dismissed != nil) self.dismissed();
}

// There is no main menu that would know these keys.
- (BOOL)performKeyEquivalent:(NSEvent*)event {
  const NSEventModifierFlags modifiers = NSEventModifierFlagCommand | NSEventModifierFlagOption |
                                         NSEventModifierFlagControl | NSEventModifierFlagShift;
  if ((event.modifierFlags & modifiers) == NSEventModifierFlagCommand &&
      [self performCommand:event.characters.lowercaseString])
    return YES;
  return [super performKeyEquivalent:event];
}

- (BOOL)performCommand:(NSString*)key {
  if ([key isEqualToString:@"w"]) {
    if (self.dismissed != nil) self.dismissed();
  } else if ([key isEqualToString:@"q"]) {
    if (self.quit != nil) self.quit();
  } else if ([key isEqualToString:@"c"]) {
    return [NSApp sendAction:@selector(copy:) to:nil from:self];
  } else if ([key isEqualToString:@"a"]) {
    return [NSApp sendAction:@selector(selectAll:) to:nil from:self];
  } else {
    return NO;
  }
  return YES;
}

@end
