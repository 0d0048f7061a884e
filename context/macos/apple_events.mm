#include "context/macos/apple_events.h"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

#include "context/tabs.h"
#include "records/browsers.h"
#include "system/macos/foundation_text.h"

namespace tarnwick {
namespace {

constexpr NSTimeInterval answerSeconds = 3;

// `data` picks things of the class `want` out of `container`; nil when it is no valid specifier.
NSAppleEventDescriptor* specifier(OSType want, OSType form, NSAppleEventDescriptor* data,
                                  NSAppleEventDescriptor* container) {
  if (data == nil || container == nil) return nil;
  NSAppleEventDescriptor* record = [NSAppleEventDescriptor recordDescriptor];
  [record setDescriptor:[NSAppleEventDescriptor descriptorWithTypeCode:want] forKeyword:keyAEDesiredClass];
  [record setDescriptor:[NSAppleEventDescriptor descriptorWithEnumCode:form] forKeyword:keyAEKeyForm];
  [record setDescriptor:data forKeyword:keyAEKeyData];
  [record setDescriptor:container forKeyword:keyAEContainer];
  return [record coerceToDescriptorType:typeObjectSpecifier];
}

// The address of every tab of every window.
NSAppleEventDescriptor* addressesSpecifier(const KnownBrowser& browser) {
  const OSType all = kAEAll;
  NSAppleEventDescriptor* every = [NSAppleEventDescriptor descriptorWithDescriptorType:typeAbsoluteOrdinal
                                                                                 bytes:&all
                                                                                length:sizeof all];
  NSAppleEventDescriptor* windows =
      specifier(cWindow, formAbsolutePosition, every, [NSAppleEventDescriptor nullDescriptor]);
  NSAppleEventDescriptor* tabs =
      specifier(fourCharCode(browser.tabClass), formAbsolutePosition, every, windows);
  return specifier(cProperty, formPropertyID,
                   [NSAppleEventDescriptor descriptorWithTypeCode:fourCharCode(browser.urlProperty)], tabs);
}

bool isText(NSAppleEventDescriptor* item) {
  switch (item.descriptorType) {
    case typeUnicodeText:
    case typeUTF8Text:
    case typeUTF16ExternalRepresentation:
    case typeChar:
      return true;
    default:
      return false;
  }
}

// Appends the texts in a list of lists, in order; what is neither is skipped, and so is anything deeper.
void collectTexts(NSAppleEventDescriptor* item, int depth, std::vector<std::string>& texts) {
  if (isText(item)) {
    NSString* text = item.stringValue;
    if (text != nil) texts.push_back(textFrom(text));
  } else if (item.descriptorType == typeAEList && depth < 2) {
    for (NSInteger at = 1; at <= item.numberOfItems; ++at) {
      collectTexts([item descriptorAtIndex:at], depth + 1, texts);
    }
  }
}

// The program's answer; nil when it sent none in time or answered with an error.
NSAppleEventDescriptor* answerTo(NSAppleEventDescriptor* question, const std::string& bundleID) {
  NSAppleEventDescriptor* target =
      [NSAppleEventDescriptor descriptorWithBundleIdentifier:foundationText(bundleID)];
  NSAppleEventDescriptor* event = [NSAppleEventDescriptor appleEventWithEventClass:kAECoreSuite
                                                                           eventID:kAEGetData
                                                                  targetDescriptor:target
                                                                          returnID:kAutoGenerateReturnID
                                                                     transactionID:kAnyTransactionID];
  [event setParamDescriptor:question forKeyword:keyDirectObject];
  const auto options = NSAppleEventSendWaitForReply | NSAppleEventSendNeverInteract;
  NSAppleEventDescriptor* reply = [event sendEventWithOptions:options timeout:answerSeconds error:nil];
  if ([reply paramDescriptorForKeyword:keyErrorNumber].int32Value != 0) return nil;
  return [reply paramDescriptorForKeyword:keyDirectObject];
}

}  // namespace

std::int32_t automationStatus(const std::string& bundleID, bool askUser) {
  @autoreleasepool {
    NSAppleEventDescriptor* target =
        [NSAppleEventDescriptor descriptorWithBundleIdentifier:foundationText(bundleID)];
    if (target.aeDesc == nullptr) return procNotFound;
    return AEDeterminePermissionToAutomateTarget(target.aeDesc, typeWildCard, typeWildCard,
                                                 static_cast<Boolean>(askUser));
  }
}

std::optional<std::vector<std::string>> tabURLs(const std::string& bundleID) {
  const KnownBrowser* browser = scriptableBrowser(bundleID);
  if (browser == nullptr || browser->tabClass.empty()) return std::nullopt;
  @autoreleasepool {
    NSAppleEventDescriptor* question = addressesSpecifier(*browser);
    NSAppleEventDescriptor* answer = question == nil ? nil : answerTo(question, bundleID);
    if (answer == nil) return std::nullopt;
    std::vector<std::string> urls;
    collectTexts(answer, 0, urls);
    return urls;
  }
}

}  // namespace tarnwick
