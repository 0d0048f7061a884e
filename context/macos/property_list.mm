#include "system/port.h"

#import <Foundation/Foundation.h>

#include "context/property_list_bounds.h"
#include "system/macos/foundation_text.h"

namespace tarnwick {

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
