// The menu's two choices of the macOS user: the system's login items, which know only programs that lie in an
// application bundle, and the user's defaults.
#import <Foundation/Foundation.h>

#include "app/panel/panel_window.h"
#include "app/remedies/macos/applications.h"

// What is asked of SMAppService. Not every SDK has its framework: it is loaded when it is needed.
@protocol LoginItemService <NSObject>

@property(class, readonly) id<LoginItemService> mainAppService;
@property(readonly) NSInteger status;

- (BOOL)registerAndReturnError:(NSError**)error;
- (BOOL)unregisterAndReturnError:(NSError**)error;

@end

namespace tarnwick::panel {
namespace {

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

class UserPanelSettings final : public PanelSettings {
 public:
  bool opensAtLogin() override { return isLoginItem(); }
  void setOpensAtLogin(bool on) override { setLoginItem(on); }
  bool prTitles() override { return isDefaultTrue("prTitles"); }
  void setPrTitles(bool on) override { setDefault("prTitles", on); }
};

}  // namespace

std::unique_ptr<PanelSettings> userPanelSettings(const Self& /*self*/) {
  return std::make_unique<UserPanelSettings>();
}

}  // namespace tarnwick::panel
