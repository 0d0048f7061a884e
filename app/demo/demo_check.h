// A check of the demo machine: the rules over it, and what they get to know outside the snapshot. That is
// what the demo itself says, and nothing of this machine, so a demo reads the same everywhere, whatever lies
// in its invented folders.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/model/model_services.h"

namespace tarnwick {

// Who reads the demo, and when.
struct DemoReader {
  Self self;                                         // the demo's processes and projects are this user's
  Timestamp now;                                     // the demo's ages count from here
  std::function<std::string(Timestamp)> mediumDate;  // how this reader's dates are written
};

// Absent when there is no demo of that name; without a name, the base demo.
// `biggest`: so many of the biggest users are looked for.
std::optional<Check> checkDemo(const std::optional<std::string>& scenario, const DemoReader& reader,
                               std::size_t biggest = 0);

}  // namespace tarnwick
