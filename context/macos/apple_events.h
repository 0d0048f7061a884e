// Questions to another program through Apple events. They block their caller, one of them until the user has
// answered the system's question: not for the main thread. What fails is absent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// The system's status for automating that program in any way, see accessFromStatus() in browsers.h. With
// `askUser` the system asks the user, if it has not done so before.
std::int32_t automationStatus(const std::string& bundleID, bool askUser);

// The addresses of all open tabs, window by window. Absent for a browser without tab codes, and when it does
// not answer within three seconds.
std::optional<std::vector<std::string>> tabURLs(const std::string& bundleID);

}  // namespace tarnwick
