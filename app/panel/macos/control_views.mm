#import "app/panel/macos/control_views.h"

#include <algorithm>
#include <cmath>

#import "app/panel/macos/symbol_views.h"
#import "app/panel/macos/theme.h"
#include "system/macos/foundation_text.h"

@implementation Target

+ (instancetype)targetWithAction:(void (^)(void))action {
  Target* target = [[Target alloc] init];
  target->_action = [action copy];
  return target;
}

// The action may replace the panel's views, and this target with them.
- (void)fire {
  void (^action)(void) = self.action;
  action();
}

@end

// A title that stands where a text would, and shows by its colour and the pointer that it can be clicked.
__attribute__((objc_runtime_name("TarnwickLinkButton")))
@interface LinkButton : NSButton
@end

@implementation LinkButton

- (void)resetCursorRects {
  [self addCursorRect:self.bounds cursor:NSCursor.pointingHandCursor];
}

@end

__attribute__((objc_runtime_name("TarnwickFoldButton")))
@interface FoldButton : NSButton
@end

@implementation FoldButton

// The row's views would take the click otherwise.
- (NSView*)hitTest:(NSPoint)point {
  return [super hitTest:point] == nil ? nil : self;
}

// A button without title and border has nothing of its own to put a ring around.
- (NSRect)focusRingMaskBounds {
  return self.bounds;
}

- (void)drawFocusRingMask {
  [[NSBezierPath bezierPathWithRoundedRect:self.bounds xRadius:6 yRadius:6] fill];
}

@end

namespace tarnwick::panel {
namespace {

constexpr double symbolSize = 15;
constexpr double symbolSide = 24;  // what the pointer can hit around a lone symbol
constexpr double foldPadding = 3;  // above and below the row

void makeBorderless(NSButton* button) {
  button.bordered = NO;
  [button setButtonType:NSButtonTypeMomentaryChange];
}

NSButton* smallButton(NSString* title) {
  NSButton* view = [NSButton buttonWithTitle:title target:nil action:nil];
  view.bezelStyle = NSBezelStyleRounded;
  view.controlSize = NSControlSizeSmall;
  view.font = Theme::buttonFont();
  return view;
}

NSButton* linkButton(NSString* title) {
  NSButton* view = [LinkButton buttonWithTitle:title target:nil action:nil];
  makeBorderless(view);
  view.attributedTitle = [[NSAttributedString alloc] initWithString:title
                                                         attributes:@{
                                                           NSFontAttributeName : Theme::buttonFont(),
                                                           NSForegroundColorAttributeName : NSColor.linkColor
                                                         }];
  return view;
}

NSButton* plainButton(NSString* title) {
  NSButton* view = [NSButton buttonWithTitle:title target:nil action:nil];
  makeBorderless(view);
  view.font = Theme::buttonFont();
  return view;
}

// Null where the system does not have the symbol.
NSButton* symbolButton(const Button& button) {
  NSImage* image = symbolImage(button.symbol, symbolSize, Symbol::Weight::regular);
  if (image == nil) return nil;
  NSButton* view = [NSButton buttonWithImage:image target:nil action:nil];
  makeBorderless(view);
  view.imagePosition = NSImageOnly;
  view.contentTintColor = Theme::colour(ColourRole::secondary);
  view.frame = NSMakeRect(0, 0, symbolSide, symbolSide);
  return view;
}

NSButton* titledButton(const Button& button) {
  NSString* title = foundationText(button.title.empty() ? button.accessibleName : button.title);
  NSButton* view = button.style == Button::Style::small  ? smallButton(title)
                   : button.style == Button::Style::link ? linkButton(title)
                                                         : plainButton(title);
  view.cell.lineBreakMode = NSLineBreakByTruncatingTail;
  [view sizeToFit];
  return view;
}

}  // namespace

MadeView makeButton(const Button& button, double width, Target* target) {
  NSButton* view = button.title.empty() ? symbolButton(button) : nil;
  if (view == nil) view = titledButton(button);
  view.target = target;
  view.action = @selector(fire);
  view.enabled = button.enabled;
  if (!button.toolTip.empty()) view.accessibilityHelp = view.toolTip = foundationText(button.toolTip);
  if (!button.accessibleName.empty()) view.accessibilityLabel = foundationText(button.accessibleName);
  MadeView made = asFramed(view);
  made.size.width = std::min(made.size.width, std::min(width, button.wrapWidth.value_or(width)));
  return made;
}

MadeView makeFold(const Fold& fold, const MadeView& row, Target* target) {
  const Extent size{row.size.width, row.size.height + 2 * foldPadding};
  FoldButton* view = [[FoldButton alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
  makeBorderless(view);
  view.title = @"";
  view.imagePosition = NSNoImage;
  view.target = target;
  view.action = @selector(fire);
  view.accessibilityLabel = foundationText(fold.accessibleName);
  view.accessibilityRole = NSAccessibilityButtonRole;
  view.accessibilityExpanded = fold.open;
  hideFromReaders(row.view);  // the label says it all
  place(row, {0, foldPadding}, view);
  return {view, size};
}

}  // namespace tarnwick::panel
