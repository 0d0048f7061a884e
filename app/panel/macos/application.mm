// The running application: status item, panel, model and main loop.
#import <AppKit/AppKit.h>

#include <memory>
#include <optional>

#include "app/cli/output.h"
#include "app/model/thread_executor.h"
#import "app/panel/macos/desktop.h"
#import "app/panel/macos/panel.h"
#import "app/panel/macos/single_instance.h"
#import "app/panel/macos/status_item.h"
#include "app/panel/panel_controller.h"
#include "app/panel/panel_jobs.h"
#include "app/remedies/macos/applications.h"

// What the system tells the application.
__attribute__((objc_runtime_name("TarnwickApplicationDelegate")))
@interface ApplicationDelegate : NSObject<NSApplicationDelegate>

@property(nonatomic, copy) void (^launched)(void);
@property(nonatomic, copy) void (^reopened)(void);  // the bundle was opened once more
@property(nonatomic, copy) void (^ending)(void);    // the process ends when it returns

@end

@implementation ApplicationDelegate

- (void)applicationDidFinishLaunching:(NSNotification*)__unused notification {
  self.launched();
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)__unused sender
                    hasVisibleWindows:(BOOL)__unused hasVisibleWindows {
  self.reopened();
  return NO;
}

- (void)applicationWillTerminate:(NSNotification*)__unused notification {
  self.ending();
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)__unused application {
  return YES;
}

@end

namespace tarnwick::panel {
namespace {

constexpr NSTimeInterval sameClick = 0.3;  // seconds between losing the keyboard and the click that took it

void after(int64_t delay, dispatch_block_t step) {
  dispatch_after(dispatch_time(DISPATCH_TIME_NOW, delay * static_cast<int64_t>(NSEC_PER_SEC)),
                 dispatch_get_main_queue(), step);
}

class RunningApplication {
 public:
  explicit RunningApplication(const PanelApplication& application)
      : executor_([this] { drainSoon(); }),
        model_(application.makeModel(executor_, copyToPasteboard)),
        panel_([this] { return item_.has_value() ? item_->button() : nil; },
               {.perform = [this](const PanelAction& action) { controller_.perform(action); },
                .focusLeft = [this] { focusLeft(); },
                .dismissed = [this] { controller_.close(); }}),
        controller_(*model_, executor_, panel_, *application.settings, application.now),
        settings_(*application.settings),
        exercise_(application.exercise) {}

  RunningApplication(const RunningApplication&) = delete;
  RunningApplication& operator=(const RunningApplication&) = delete;

  void launch() {
    item_.emplace(
        StatusItem::Handlers{.clicked = [this] { clickItem(); },
                             .lines = [this] { return menu(settings_.opensAtLogin(), settings_.prTitles()); },
                             .perform = [this](const PanelAction& action) { performFromItem(action); }});
    instance_.listen([this] { controller_.open(); });
    if (exercise_) exercise();
  }

  void open() { controller_.open(); }

  // False when a task still runs; then the program must end without destroying anything.
  bool endWithin(double seconds) { return executor_.endWithin(seconds); }

 private:
  // Any thread.
  void drainSoon() {
    const std::weak_ptr<const bool> alive = alive_;
    dispatch_async(dispatch_get_main_queue(), ^{
      if (!alive.expired()) executor_.drainMain();
    });
  }

  void focusLeft() {
    focusLeftAt_ = NSProcessInfo.processInfo.systemUptime;
    controller_.close();
  }

  // Where a click on the item takes the keyboard from the open panel, which closes it, the same click must
  // not open it again.
  void clickItem() {
    if (NSProcessInfo.processInfo.systemUptime - focusLeftAt_ >= sameClick) controller_.toggle();
  }

  // Nobody sees the report being copied into a closed panel.
  void performFromItem(const PanelAction& action) {
    if (std::holds_alternative<CopyReport>(action)) {
      controller_.copyFreshReport();
    } else {
      controller_.perform(action);
    }
  }

  // The application outlives its main queue's blocks: it goes when the process ends.
  void exercise() {
    after(1, ^{
      controller_.toggle();
    });
    after(4, ^{
      controller_.openFirstCard();
    });
    after(9, ^{
      controller_.close();
    });
  }

  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);  // gone with the application
  ThreadExecutor executor_;
  std::unique_ptr<Model> model_;
  AppKitPanel panel_;
  PanelController controller_;
  UserSettings& settings_;
  std::optional<StatusItem> item_;  // absent: not launched yet
  SingleInstance instance_;
  NSTimeInterval focusLeftAt_ = -sameClick;  // since the machine started; before it: never
  bool exercise_;
};

}  // namespace

int showApplication(const PanelApplication& application) {
  @autoreleasepool {
    if (!findDisplay()) return complain("There is no display to show the panel on. Try --print.");
    if (SingleInstance().askToOpen()) return 0;

    [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyAccessory];
    auto running = std::make_unique<RunningApplication>(application);
    auto* place = &running;
    // The application holds its delegate weakly.
    NS_VALID_UNTIL_END_OF_SCOPE ApplicationDelegate* delegate = [[ApplicationDelegate alloc] init];
    delegate.launched = ^{
      (*place)->launch();
    };
    delegate.reopened = ^{
      (*place)->open();
    };
    // The process ends without coming back here: threads that still work must be waited for now.
    const std::function<void(int)> leaveNow = application.leaveNow;
    delegate.ending = ^{
      if (!(*place)->endWithin(quitSeconds)) leaveNow(0);
      place->reset();
    };
    NSApp.delegate = delegate;
    [NSApp run];
  }
  return 0;
}

}  // namespace tarnwick::panel
