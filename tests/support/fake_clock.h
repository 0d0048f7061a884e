// A clock that stands still until a test turns it or something sleeps on it.
#pragma once

#include <vector>

#include "system/clock.h"

namespace tarnwick {

struct FakeClock : Clock {
  Timestamp time = timestamp(1'700'000'000);
  double up = 1000;            // seconds
  std::vector<double> sleeps;  // every sleep asked for, in order

  void turn(double seconds) {
    time += Seconds(seconds);
    up += seconds;
  }

  Timestamp now() override { return time; }
  double uptime() override { return up; }
  void sleep(double seconds) override {
    sleeps.push_back(seconds);
    turn(seconds);
  }
};

}  // namespace tarnwick
