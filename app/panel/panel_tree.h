// The panel as a tree of plain values: every text, distance, font role, colour role, tool tip and action
// is here, and a painter per toolkit makes views of it without deciding anything. All lengths are points
// (logical pixels); texts are UTF-8.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "app/panel/panel_action.h"

namespace tarnwick::panel {

enum class FontRole {
  headline,     // bold 13
  subheadline,  // 11
  body,         // bold 13: only the note uses it
  callout,      // 12
  caption,      // 10
  cardTitle,    // semibold 12
  foldTitle,    // semibold 13
  number,       // 12, digits of one width
  metric        // 10, digits of one width
};

enum class ColourRole { label, secondary, green, orange };

struct Insets {
  double top = 0, left = 0, bottom = 0, right = 0;
};

struct Node;

// What a group of views is for those who hear the panel. Never on the screen.
struct Spoken {
  std::string name;         // empty: its parts speak for themselves
  std::string description;  // what else the eye sees in it; empty: nothing
  bool announced = false;   // said as soon as it appears
};

// Children one after the other.
struct Stack {
  enum class Direction { vertical, horizontal };
  // Across the direction. `start` is the leading edge of a vertical stack and the top of a horizontal one.
  enum class Alignment { start, centre };

  Direction direction = Direction::vertical;
  double spacing = 0;
  Insets insets;
  Alignment alignment = Alignment::start;
  std::optional<double> width;  // insets included; absent: as wide as its children
  std::vector<Node> children;
  std::string toolTip;  // of the whole stack; empty: none
  Spoken spoken;
};

// A text that wraps at the width it has. It is never cut off.
struct Label {
  std::string text;  // empty: takes its place in a row and shows nothing
  FontRole font = FontRole::body;
  ColourRole colour = ColourRole::label;
  std::optional<double> wrapWidth;  // the widest it may get; absent: what its parent leaves
  bool selectable = false;          // the user can mark and copy the text
  std::string id;                   // of a text that changes by itself; empty: it does not
  std::string description;          // as of what is spoken
};

// A picture: a system symbol by name, or the file icon of a path (begins with "/").
struct Symbol {
  enum class Weight { regular, bold };

  std::string name;
  double size = 13;  // of the symbol: its point size
  double frame = 0;  // side of the square it is centred in; 0: as large as the symbol
  Weight weight = Weight::regular;
  ColourRole colour = ColourRole::label;
  std::string accessibleName;  // empty: decoration, a reader skips it
};

struct Button {
  enum class Style { small, link, borderless };

  std::string id;       // the same control keeps its id when the panel is rebuilt
  std::string title;    // empty: shows `symbol`
  std::string symbol;   // symbol name; empty: shows `title`
  std::string toolTip;  // also its description for those who hear the panel
  std::string accessibleName;
  std::optional<double> wrapWidth;  // the widest it may get; absent: what its parent leaves
  Style style = Style::small;
  bool enabled = true;
  PanelAction action;
};

// A rounded surface around one child.
struct Box {
  Insets insets;
  std::optional<double> cornerRadius;  // absent: half the height
  ColourRole background = ColourRole::label;
  double opacity = 0;            // of the background, 0..1
  std::optional<double> width;   // insets included; absent: as wide as its child
  std::optional<double> widest;  // so far may its child stretch it, beyond its parent; absent: not at all
  std::vector<Node> child;       // exactly one
  Spoken spoken;
};

// A list that scrolls vertically where it is higher than its cap. No background; the scroller hides itself.
struct Scroll {
  double width = 0;                 // of the list
  std::optional<double> heightCap;  // absent: as high as the list
  std::vector<Node> child;          // exactly one
  std::string accessibleName;
};

// A row that is one big button, and opens or closes what follows it.
struct Fold {
  std::string id;  // as of a button
  bool open = false;
  std::string accessibleName;
  PanelAction action;
  std::vector<Node> row;  // exactly one
};

// The small sign of work in progress.
struct Spinner {
  double size = 16;
  std::string accessibleName;
};

struct Node {
  std::variant<Stack, Label, Symbol, Button, Box, Scroll, Fold, Spinner> view;
  bool grows = false;  // in a horizontal stack: takes the width that the others leave
};

// One line of the panel's menu.
struct MenuItem {
  std::string title;       // empty: a separator
  bool checked = false;    // shows a check mark
  bool checkable = false;  // can show a check mark
  PanelAction action;

  bool operator==(const MenuItem&) const = default;
};

}  // namespace tarnwick::panel
