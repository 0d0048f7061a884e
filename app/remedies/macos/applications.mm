#include "app/remedies/macos/applications.h"

#import <AppKit/AppKit.h>

#include "system/macos/foundation_text.h"

namespace tarnwick {

void askApplicationsToQuit(const std::string& bundleID) {
  @autoreleasepool {
    NSArray<NSRunningApplication*>* apps =
        [NSRunningApplication runningApplicationsWithBundleIdentifier:foundationText(bundleID)];
    for (NSRunningApplication* app in apps) [app terminate];
  }
}

bool isInDesktopSession() {
  const CFDictionaryRef session = CGSessionCopyCurrentDictionary();
  if (session == nullptr) return false;
  CFRelease(session);
  return true;
}

std::optional<bool> openAddress(const std::string& address) {
  @autoreleasepool {
    NSURL* url = [NSURL URLWithString:foundationText(address)];
    if (url == nil) return std::nullopt;
    return [NSWorkspace.sharedWorkspace openURL:url];
  }
}

void copyToPasteboard(const std::string& text) {
  @autoreleasepool {
    NSPasteboard* pasteboard = NSPasteboard.generalPasteboard;
    [pasteboard clearContents];
    [pasteboard setString:foundationText(text) forType:NSPasteboardTypeString];
  }
}

}  // namespace tarnwick
