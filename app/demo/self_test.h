// The built-in consistency run: the rules over the demo machine and its scenarios must say exactly what they
// are known to say. Needs no live source; any system.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/demo/demo_check.h"

namespace tarnwick {

// One finding as it must read. "{home}" stands for the home directory, "{date}" for the localized date of
// the demo's oldest sleep blocker.
struct ExpectedFinding {
  std::string_view id;
  std::string_view title;
  std::string_view detail;
  std::string_view summary;
  std::string_view commands;  // fix commands of the steps, then of the actions, joined by line feeds
};

// One scenario as it must be diagnosed, findings in pipeline order.
struct ExpectedDiagnosis {
  std::optional<std::string_view> scenario;  // absent: the base demo
  std::string_view headline;
  std::string_view cause;  // empty: none
  std::span<const ExpectedFinding> findings;
};

// What all demos must give.
std::span<const ExpectedDiagnosis> expectedDiagnoses();

// The first difference, naming both texts; absent when everything is as expected.
std::optional<std::string> firstMismatch(std::span<const ExpectedDiagnosis> expected,
                                         const DemoReader& reader);

}  // namespace tarnwick
