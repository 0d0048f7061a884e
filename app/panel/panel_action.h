// What a click in the panel asks for, as plain values.
#pragma once

#include <variant>

#include "records/finding.h"

namespace tarnwick::panel {

struct ToggleMore {
  bool operator==(const ToggleMore&) const = default;
};
struct ToggleLeftovers {
  bool operator==(const ToggleLeftovers&) const = default;
};

// The finding is the one that was shown when the user clicked, even if a check has replaced it since.
struct OpenDetails {
  Finding finding;
  bool operator==(const OpenDetails&) const = default;
};
struct CloseDetails {
  bool operator==(const CloseDetails&) const = default;
};
struct RunRemedy {
  Action action;
  Finding finding;  // the card it is on
  bool operator==(const RunRemedy&) const = default;
};

struct CheckAgain {
  bool operator==(const CheckAgain&) const = default;
};
struct OpenMenu {
  bool operator==(const OpenMenu&) const = default;
};

struct CopyReport {
  bool operator==(const CopyReport&) const = default;
};
struct ToggleLoginItem {
  bool operator==(const ToggleLoginItem&) const = default;
};
struct TogglePrTitles {
  bool operator==(const TogglePrTitles&) const = default;
};
struct Quit {
  bool operator==(const Quit&) const = default;
};

using PanelAction = std::variant<ToggleMore, ToggleLeftovers, OpenDetails, CloseDetails, RunRemedy,
                                 CheckAgain, OpenMenu, CopyReport, ToggleLoginItem, TogglePrTitles, Quit>;

}  // namespace tarnwick::panel
