// One panel for each user session: a second start asks the first to open its panel. The two talk through the
// session's distributed notifications, and the first one answers: a start that gets no answer goes on as if
// it were alone. Main thread.
#pragma once

#import <Foundation/Foundation.h>

#include <functional>

@class Listener;

namespace tarnwick::panel {

class SingleInstance {
 public:
  SingleInstance() = default;
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  // Of a later start: true when the first one has opened its panel. Waits only when there may be one, two
  // seconds at most.
  bool askToOpen() const;

  // Of the first: calls `open` whenever a later start asks, as long as this lives.
  void listen(std::function<void()> open);

 private:
  Listener* listener_ = nil;  // nil: does not listen
};

}  // namespace tarnwick::panel
