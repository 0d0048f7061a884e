// The choices of the macOS user: the system's login items, which know only programs that lie in an
// application bundle, and the user's defaults.
#include "app/settings/user_settings.h"

#import <Foundation/Foundation.h>

// What is asked of SMAppService. Not every SDK has its framework: it is loaded when it is needed.
@protocol LoginItemService <NSObject>

@property(class, readonly) id<LoginItemService> mainAppService;
@property(readonly) NSInteger status;

+ (void)openSystemSettingsLoginItems;
- (BOOL)registerAndReturnError:(NSError**)error;
- (BOOL)unregisterAndReturnError:(NSError**)error;

@end

namespace tarnwick {
namespace {

NSString* const titlesKey = @"prTitles";
constexpr NSInteger loginItemEnabled = 1;        // SMAppServiceStatusEnabled
constexpr NSInteger loginItemNeedsApproval = 2;  // SMAppServiceStatusRequiresApproval

// Nil where the system does not have it.
Class<LoginItemService> loginItemServices() {
  if (![[NSBundle bundleWithPath:@"/System/Library/Frameworks/ServiceManagement.framework"] load]) return nil;
  return NSClassFromString(@"SMAppService");
}

// False also where the service is missing, and for an item that the user has switched off in the settings.
bool isLoginItem() {
  @autoreleasepool {
    return [loginItemServices() mainAppService].status == loginItemEnabled;
  }
}

// Where the service is missing or refuses, nothing changes. What was switched off in the system's settings
// can only be switched on there, so they are opened.
void setLoginItem(bool on) {
  @autoreleasepool {
    const Class<LoginItemService> services = loginItemServices();
    const id<LoginItemService> item = [services mainAppService];
    if (on) {
      [item registerAndReturnError:nil];
      if (item.status == loginItemNeedsApproval) [services openSystemSettingsLoginItems];
    } else {
      [item unregisterAndReturnError:nil];
    }
  }
}

class MacosSettings final : public UserSettings {
 public:
  bool opensAtLogin() override { return isLoginItem(); }
  void setOpensAtLogin(bool on) override { setLoginItem(on); }
  bool prTitles() override {
    @autoreleasepool {
      return [NSUserDefaults.standardUserDefaults boolForKey:titlesKey];
    }
  }
  void setPrTitles(bool on) override {
    @autoreleasepool {
      [NSUserDefaults.standardUserDefaults setBool:on forKey:titlesKey];
    }
  }
};

}  // namespace

std::unique_ptr<UserSettings> userSettings(const Self& /*self*/, Files& /*files*/) {
  return std::make_unique<MacosSettings>();
}

}  // namespace tarnwick
