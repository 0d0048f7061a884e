// Texts between the records (valid UTF-8) and Foundation (UTF-16, which may hold halves of characters).
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace tarnwick {

// Valid UTF-8, what is no character replaced; empty for nil.
std::string textFrom(NSString* text);

// Never nil; invalid bytes are replaced.
NSString* foundationText(std::string_view text);

}  // namespace tarnwick
