// Waiting for something that another process does.
#pragma once

#include <chrono>
#include <thread>

namespace tarnwick {

// Asks until the condition holds; false when it did not within half a minute.
template <typename Condition>
bool waitUntil(Condition holds) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!holds()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

}  // namespace tarnwick
