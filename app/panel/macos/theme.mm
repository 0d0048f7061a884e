#import "app/panel/macos/theme.h"

namespace tarnwick::panel {
namespace {

NSFont* styled(NSFontTextStyle style) { return [NSFont preferredFontForTextStyle:style options:@{}]; }

}  // namespace

NSFont* Theme::font(FontRole role) {
  switch (role) {
    case FontRole::headline:
      return styled(NSFontTextStyleHeadline);
    case FontRole::subheadline:
      return styled(NSFontTextStyleSubheadline);
    case FontRole::body:
      return [NSFont boldSystemFontOfSize:styled(NSFontTextStyleBody).pointSize];
    case FontRole::callout:
      return styled(NSFontTextStyleCallout);
    case FontRole::cardTitle:
      return [NSFont systemFontOfSize:12 weight:NSFontWeightSemibold];
    case FontRole::foldTitle:
      return [NSFont systemFontOfSize:13 weight:NSFontWeightSemibold];
    case FontRole::number:
      return [NSFont monospacedDigitSystemFontOfSize:12 weight:NSFontWeightRegular];
    case FontRole::metric:
      return [NSFont monospacedDigitSystemFontOfSize:10 weight:NSFontWeightRegular];
    case FontRole::caption:
      break;
  }
  return styled(NSFontTextStyleCaption1);
}

NSFont* Theme::buttonFont() { return [NSFont systemFontOfSize:NSFont.smallSystemFontSize]; }

NSColor* Theme::colour(ColourRole role) {
  switch (role) {
    case ColourRole::label:
      break;
    case ColourRole::secondary:
      return NSColor.secondaryLabelColor;
    case ColourRole::green:
      return NSColor.systemGreenColor;
    case ColourRole::orange:
      return NSColor.systemOrangeColor;
  }
  return NSColor.labelColor;
}

}  // namespace tarnwick::panel
