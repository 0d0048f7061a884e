#include "system/macos/foundation_text.h"

#include "records/utf8.h"

namespace tarnwick {

std::string textFrom(NSString* text) {
  NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  if (bytes == nil) return {};
  return repairUtf8(std::string_view(static_cast<const char*>(bytes.bytes), bytes.length));
}

NSString* foundationText(std::string_view text) {
  const std::string valid = repairUtf8(text);
  NSString* result = [[NSString alloc] initWithBytes:valid.data()
                                              length:valid.size()
                                            encoding:NSUTF8StringEncoding];
  return result == nil ? @"" : result;
}

}  // namespace tarnwick
