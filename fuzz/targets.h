// What is fed with invented bytes: each reader of foreign bytes, and the whole way from a snapshot to report
// and panel. A target returns when all that it promises holds and aborts the process otherwise.
#pragma once

#include <span>
#include <string_view>

namespace tarnwick {

struct FuzzTarget {
  std::string_view name;  // also its folder in corpus/
  void (*run)(std::string_view bytes);
};

std::span<const FuzzTarget> fuzzTargets();

// Aborts, naming what does not hold.
void promise(bool holds, std::string_view what);

// One machine made of the bytes: the rules over it, then report and panel.
void runMachine(std::string_view bytes);

}  // namespace tarnwick
