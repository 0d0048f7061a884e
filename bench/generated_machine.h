// Invented machines of any size, the same from run to run.
#pragma once

#include "records/snapshot.h"

namespace tarnwick {

// `count` processes in the mixture of a developer's machine: terminals with shells and servers in
// projects, browsers with many helpers, a chain of 1,000 and a star of 10,000 children where there is room.
Snapshot generatedMachine(int count, const Self& self);

}  // namespace tarnwick
