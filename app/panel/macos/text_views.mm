#import "app/panel/macos/text_views.h"

#include <algorithm>
#include <cmath>

#import "app/panel/macos/theme.h"
#include "system/macos/foundation_text.h"

namespace tarnwick::panel {
namespace {

constexpr CGFloat tallestText = 100'000;  // higher than any text

}  // namespace

MadeView makeLabel(const Label& label, double width) {
  NSTextField* field = [NSTextField wrappingLabelWithString:foundationText(label.text)];
  field.selectable = label.selectable;
  if (!label.description.empty()) field.accessibilityHelp = foundationText(label.description);
  field.font = Theme::font(label.font);
  field.textColor = Theme::colour(label.colour);
  const double widest = std::min(width, label.wrapWidth.value_or(width));
  const NSSize room = [field frameForAlignmentRect:NSMakeRect(0, 0, widest, tallestText)].size;
  const NSSize needed = [field.cell cellSizeForBounds:NSMakeRect(0, 0, room.width, room.height)];
  field.frame = NSMakeRect(0, 0, std::min(std::ceil(needed.width), room.width), std::ceil(needed.height));
  return asFramed(field);
}

}  // namespace tarnwick::panel
