// The panel drawn into a PNG, without a screen.
#import <AppKit/AppKit.h>

#include <cmath>

#import "app/panel/macos/desktop.h"
#import "app/panel/macos/painter.h"
#include "app/panel/panel_jobs.h"
#include "records/checked.h"

// What a picture of the panel is drawn on: the background colour of a window.
__attribute__((objc_runtime_name("TarnwickBackdrop")))
@interface Backdrop : NSView
@end

@implementation Backdrop

- (BOOL)isOpaque {
  return YES;
}

- (void)drawRect:(NSRect)__unused dirtyRect {
  [NSColor.windowBackgroundColor setFill];
  NSRectFill(self.bounds);
}

@end

namespace tarnwick::panel {
namespace {

constexpr double pictureScale = 2;
constexpr NSTimeInterval settling = 0.2;  // seconds; some images come a turn of the loop later

NSInteger pixels(double points) {
  const double count = points * pictureScale;
  if (!std::isfinite(count) || std::abs(count) >= 0x1p63) fault("a picture has no size");
  return static_cast<NSInteger>(count);
}

void pinToEdges(NSView* view, NSView* parent) {
  [parent addSubview:view];
  [NSLayoutConstraint activateConstraints:@[
    [view.leadingAnchor constraintEqualToAnchor:parent.leadingAnchor],
    [view.trailingAnchor constraintEqualToAnchor:parent.trailingAnchor],
    [view.topAnchor constraintEqualToAnchor:parent.topAnchor],
    [view.bottomAnchor constraintEqualToAnchor:parent.bottomAnchor]
  ]];
}

// A window that is never on the screen: views without one have no appearance and load nothing.
NSWindow* makeWindow(NSView* backdrop) {
  NSWindow* window = [[NSWindow alloc] initWithContentRect:backdrop.frame
                                                 styleMask:NSWindowStyleMaskBorderless
                                                   backing:NSBackingStoreBuffered
                                                     defer:NO];
  window.releasedWhenClosed = NO;
  window.appearance = NSApp.appearance;
  window.contentView = backdrop;
  return window;
}

// Nil when there is no memory for it.
NSData* drawn(NSView* view) {
  const NSSize size = view.bounds.size;
  NSBitmapImageRep* bitmap = [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                                     pixelsWide:pixels(size.width)
                                                                     pixelsHigh:pixels(size.height)
                                                                  bitsPerSample:8
                                                                samplesPerPixel:4
                                                                       hasAlpha:YES
                                                                       isPlanar:NO
                                                                 colorSpaceName:NSDeviceRGBColorSpace
                                                                    bytesPerRow:0
                                                                   bitsPerPixel:0];
  if (bitmap == nil) return nil;
  bitmap.size = size;
  [view cacheDisplayInRect:view.bounds toBitmapImageRep:bitmap];
  return [bitmap representationUsingType:NSBitmapImageFileTypePNG properties:@{}];
}

NSData* drawPicture(const PanelPicture& picture) {
  NSApp.appearance =
      [NSAppearance appearanceNamed:picture.dark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua];
  const Node content = pictureContent(picture);
  static const Perform nothing = [](const PanelAction&) {};  // the block would hand out a copy's address
  __block Painting painting;
  [NSApp.effectiveAppearance performAsCurrentDrawingAppearance:^{
    painting = paint(content, nothing);
  }];

  Backdrop* backdrop = [[Backdrop alloc] initWithFrame:NSZeroRect];
  pinToEdges(painting.view, backdrop);
  [backdrop setFrameSize:backdrop.fittingSize];
  // Also while the backdrop is drawn, when nothing here names the window any more.
  NS_VALID_UNTIL_END_OF_SCOPE NSWindow* window = makeWindow(backdrop);
  [backdrop layoutSubtreeIfNeeded];
  [NSRunLoop.mainRunLoop runUntilDate:[NSDate dateWithTimeIntervalSinceNow:settling]];
  [backdrop setFrameSize:backdrop.fittingSize];
  [window setContentSize:backdrop.frame.size];
  [backdrop layoutSubtreeIfNeeded];
  return drawn(backdrop);
}

}  // namespace

bool writePanelImage(const PanelPicture& picture) {
  @autoreleasepool {
    if (!findDisplay()) return false;
    [NSApplication sharedApplication];
    NSData* image = drawPicture(picture);
    return image != nil && picture.write({static_cast<const char*>(image.bytes), image.length});
  }
}

}  // namespace tarnwick::panel
