#import "app/panel/macos/single_instance.h"

#import <AppKit/AppKit.h>

#include <memory>
#include <utility>

// Hears one kind of distributed notification as long as it lives.
__attribute__((objc_runtime_name("TarnwickListener")))
@interface Listener : NSObject

// `object` nil: whatever it is about.
- (instancetype)initForName:(NSNotificationName)name
                     object:(NSString*)object
                     action:(void (^)(NSString* object))action;

- (void)stop;

@end

@implementation Listener {
  void (^_action)(NSString*);
}

// Immediately: the system holds notifications back from an application that is not active.
- (instancetype)initForName:(NSNotificationName)name
                     object:(NSString*)object
                     action:(void (^)(NSString*))action {
  self = [super init];
  if (self != nil) {
    _action = [action copy];
    [NSDistributedNotificationCenter.defaultCenter
               addObserver:self
                  selector:@selector(hear:)
                      name:name
                    object:object
        suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
  }
  return self;
}

- (void)hear:(NSNotification*)notification {
  _action(notification.object);
}

- (void)stop {
  [NSDistributedNotificationCenter.defaultCenter removeObserver:self];
}

@end

namespace tarnwick::panel {
namespace {

constexpr NSTimeInterval answerWithin = 2;  // seconds; the first one may be busy drawing

NSNotificationName const question = @"tarnwick.openPanel";  // about the asking process, by its id
NSNotificationName const answer = @"tarnwick.panelOpened";  // about the process that asked

void tell(NSNotificationName name, NSString* object) {
  [NSDistributedNotificationCenter.defaultCenter postNotificationName:name
                                                               object:object
                                                             userInfo:nil
                                                   deliverImmediately:YES];
}

// It may also be one that draws a picture, and does not answer.
bool anotherMayRun() {
  NSRunningApplication* own = NSRunningApplication.currentApplication;
  NSString* name = own.executableURL.lastPathComponent;
  if (name == nil) name = NSProcessInfo.processInfo.processName;
  for (NSRunningApplication* other in NSWorkspace.sharedWorkspace.runningApplications) {
    if (other.processIdentifier != own.processIdentifier &&
        [other.executableURL.lastPathComponent isEqualToString:name])
      return true;
  }
  return false;
}

}  // namespace

SingleInstance::~SingleInstance() { [listener_ stop]; }

bool SingleInstance::askToOpen() const {
  if (!anotherMayRun()) return false;
  NSString* asking = @(NSProcessInfo.processInfo.processIdentifier).stringValue;
  __block bool answered = false;
  Listener* listener = [[Listener alloc] initForName:answer
                                              object:asking
                                              action:^(NSString* __unused object) {
                                                answered = true;
                                              }];
  tell(question, asking);
  NSDate* deadline = [NSDate dateWithTimeIntervalSinceNow:answerWithin];
  while (!answered && deadline.timeIntervalSinceNow > 0) {
    if (![NSRunLoop.currentRunLoop runMode:NSDefaultRunLoopMode beforeDate:deadline]) break;
  }
  [listener stop];
  return answered;
}

void SingleInstance::listen(std::function<void()> open) {
  const auto shared = std::make_shared<const std::function<void()>>(std::move(open));
  listener_ = [[Listener alloc] initForName:question
                                     object:nil
                                     action:^(NSString* object) {
                                       tell(answer, object);
                                       (*shared)();
                                     }];
}

}  // namespace tarnwick::panel
