// The choices of the macOS user: the system's login items, which know only programs that lie in an
// application bundle, and the user's defaults.
#include "app/settings/user_settings.h"

#import <Foundation/Foundation.h>

// What is asked of SMAppService. Not every SDK has its framework: it is loaded when it is needed.
@protocol LoginItemService <NSObject>

@property(class, readonly) id<LoginItemService> mainAppService;
@property(readonly) NSInteger status;

- (BOOL)registerAndReturnError:(NSError**)error;
- (BOOL)unregisterAndReturnError:(NSError**)error;

@end

namespace tarnwick {
namespace {

NSString* const titlesKey = @"prTitles";
constexpr NSInteger loginItemEnabled = 1;  // SMAppServiceStatusEnabled

// Nil where the system does not have it.
id<LoginItemService> loginItemService() {
  if (![[NSBundle bundleWithPath:@"/System/Library/Frameworks/ServiceManagement.framework"] load]) return nil;
  const Class<LoginItemService> known = NSClassFromString(@"SMAppService");
  return [known mainAppService];
}

// False also where the service is missing.
bool isLoginItem() {
  @autoreleasepool {
    return loginItemService().status == loginItemEnabled;
  }
}

// Where the service is missing or refuses, nothing changes.
void setLoginItem(bool on) {
  @autoreleasepool {
    if (on) {
      [loginItemService() registerAndReturnError:nil];
    } else {
      [loginItemService() unregisterAndReturnError:nil];
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

std::unique_ptr<UserSettings> userSettings(const Self& /*self*/) { return std::make_unique<MacosSettings>(); }

}  // namespace tarnwick
