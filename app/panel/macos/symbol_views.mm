#import "app/panel/macos/symbol_views.h"

#include <cmath>

#import "app/panel/macos/theme.h"
#include "system/macos/foundation_text.h"

namespace tarnwick::panel {
namespace {

// Of a control, readers of the screen see the cell: that an image view is no element would be lost on them.
id<NSAccessibility> whatReadersSee(NSView* view) {
  if ([view isKindOfClass:NSControl.class]) return static_cast<NSControl*>(view).cell;
  return view;
}

// A reader of the screen skips what has no name.
void nameForReaders(NSView* view, const std::string& name) {
  const id<NSAccessibility> seen = whatReadersSee(view);
  seen.accessibilityElement = !name.empty();
  if (!name.empty()) seen.accessibilityLabel = foundationText(name);
}

NSImage* fileIcon(const std::string& path, double side) {
  // A copy: the workspace may hand out the same image again.
  NSImage* icon = [[NSWorkspace.sharedWorkspace iconForFile:foundationText(path)] copy];
  icon.size = NSMakeSize(side, side);
  return icon;
}

}  // namespace

void hideFromReaders(NSView* view) {
  whatReadersSee(view).accessibilityElement = NO;
  for (NSView* child in view.subviews) hideFromReaders(child);
}

NSImage* symbolImage(const std::string& name, double pointSize, Symbol::Weight weight) {
  NSImage* image = [NSImage imageWithSystemSymbolName:foundationText(name) accessibilityDescription:nil];
  const NSFontWeight fontWeight = weight == Symbol::Weight::bold ? NSFontWeightBold : NSFontWeightRegular;
  return
      [image imageWithSymbolConfiguration:[NSImageSymbolConfiguration configurationWithPointSize:pointSize
                                                                                          weight:fontWeight]];
}

// The image lies in a plain view: its own alignment would move it out of the middle.
MadeView makeSymbol(const Symbol& symbol) {
  const bool isFile = symbol.name.starts_with('/');
  NSImage* image = isFile ? fileIcon(symbol.name, symbol.frame > 0 ? symbol.frame : symbol.size)
                          : symbolImage(symbol.name, symbol.size, symbol.weight);
  NSSize size = NSMakeSize(symbol.frame, symbol.frame);
  if (symbol.frame <= 0 && image != nil)
    size = NSMakeSize(std::ceil(image.size.width), std::ceil(image.size.height));
  NSView* square = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
  if (image == nil) return asFramed(square);

  NSImageView* view = [NSImageView imageViewWithImage:image];
  view.frame = square.bounds;
  view.imageScaling = NSImageScaleProportionallyDown;
  if (!isFile) view.contentTintColor = Theme::colour(symbol.colour);
  nameForReaders(view, symbol.accessibleName);
  [square addSubview:view];
  return asFramed(square);
}

MadeView makeSpinner(const Spinner& spinner) {
  NSProgressIndicator* view =
      [[NSProgressIndicator alloc] initWithFrame:NSMakeRect(0, 0, spinner.size, spinner.size)];
  view.style = NSProgressIndicatorStyleSpinning;
  view.controlSize = NSControlSizeSmall;
  view.indeterminate = YES;
  nameForReaders(view, spinner.accessibleName);
  [view startAnimation:nil];
  return {view, {spinner.size, spinner.size}};
}

}  // namespace tarnwick::panel
