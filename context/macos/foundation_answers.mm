// Dates and property lists through Foundation.
#include "system/port.h"

#import <Foundation/Foundation.h>

#include <algorithm>
#include <cmath>

#include "context/property_list_bounds.h"
#include "system/macos/foundation_text.h"

namespace tarnwick {

std::string localMediumDate(Timestamp moment) {
  @autoreleasepool {
    // The years 1 to 9999; a nonsense moment must not reach a calendar.
    const double asked = std::isnan(seconds(moment)) ? 0 : seconds(moment);
    const double inRange = std::clamp(asked, -62'135'596'800.0, 253'402'300'799.0);
    NSString* text = [NSDateFormatter localizedStringFromDate:[NSDate dateWithTimeIntervalSince1970:inRange]
                                                    dateStyle:NSDateFormatterMediumStyle
                                                    timeStyle:NSDateFormatterShortStyle];
    return text.length == 0 ? "?" : textFrom(text);
  }
}

std::optional<std::string> propertyListText(const std::string& list, const std::string& key) {
  if (!isHarmlessPropertyList(list)) return std::nullopt;
  @autoreleasepool {
    NSData* bytes = [NSData dataWithBytes:list.data() length:list.size()];
    id root = [NSPropertyListSerialization propertyListWithData:bytes
                                                        options:NSPropertyListImmutable
                                                         format:nil
                                                          error:nil];
    if (![root isKindOfClass:NSDictionary.class]) return std::nullopt;
    id value = static_cast<NSDictionary*>(root)[foundationText(key)];
    if (![value isKindOfClass:NSString.class]) return std::nullopt;
    return textFrom(value);
  }
}

}  // namespace tarnwick
