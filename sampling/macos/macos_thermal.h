// The thermal state as the system tells applications. Any thread.
#pragma once

#include "records/snapshot.h"

namespace tarnwick {

// Nominal for a state that this program does not know.
ThermalState currentThermalState();

}  // namespace tarnwick
