#import "app/panel/macos/surfaces.h"

#import "app/panel/macos/roles.h"

@implementation FlippedView

- (BOOL)isFlipped {
  return YES;
}

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

@implementation BoxView {
  tarnwick::panel::ColourRole _colour;
  CGFloat _opacity;
  std::optional<double> _cornerRadius;
}

- (instancetype)initWithBox:(const tarnwick::panel::Box&)box {
  self = [super initWithFrame:NSZeroRect];
  if (self != nil) {
    _colour = box.background;
    _opacity = box.opacity;
    _cornerRadius = box.cornerRadius;
  }
  return self;
}

- (void)drawRect:(NSRect)__unused dirtyRect {
  const CGFloat radius = _cornerRadius.value_or(NSHeight(self.bounds) / 2);
  [[tarnwick::panel::colourOf(_colour) colorWithAlphaComponent:_opacity] setFill];
  [[NSBezierPath bezierPathWithRoundedRect:self.bounds xRadius:radius yRadius:radius] fill];
}

@end

@implementation ListView

- (instancetype)initWithFrame:(NSRect)frame {
  self = [super initWithFrame:frame];
  if (self != nil) {
    self.drawsBackground = NO;
    self.borderType = NSNoBorder;
    self.automaticallyAdjustsContentInsets = NO;
    self.hasVerticalScroller = YES;
    self.autohidesScrollers = YES;
    self.scrollerStyle = NSScrollerStyleOverlay;
    self.horizontalScrollElasticity = NSScrollElasticityNone;
  }
  return self;
}

// The system sets it when the user's choice changes.
- (void)setScrollerStyle:(NSScrollerStyle)__unused style {
  [super setScrollerStyle:NSScrollerStyleOverlay];
}

@end
