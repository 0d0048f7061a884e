// The panel's fonts and colours. Every text and its ground keep a contrast of at least 4.5 to 1, and of 7 to
// 1 where the desktop wants a high contrast. Fonts: Inter at fixed pixel sizes, times the scale of the
// desktop's texts, so that the panel looks the same on every desktop; where Inter is missing, the next family
// of the list is used and the texts wrap elsewhere. Main thread.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <optional>

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

// What a desktop wants its windows to look like.
struct Look {
  bool dark = false;
  bool highContrast = false;     // also outlines around what is otherwise only tinted
  std::optional<QColor> accent;  // absent: the panel's own blue
  double scale = 1;              // of the texts and everything around them, beside the screen's own scale

  bool operator==(const Look&) const = default;
};

class Theme {
 public:
  explicit Theme(const Look& look);
  explicit Theme(bool dark) : Theme(Look{.dark = dark}) {}

  QColor colour(ColourRole role) const;
  QColor window() const;                 // ground of the whole panel
  QColor outline() const;                // hairline around the panel and its buttons
  QColor boxOutline() const;             // around cards, chips and notes; mostly transparent
  QColor link() const { return link_; }  // also what marks the control that has the keyboard
  QColor buttonFace() const;             // ground of a small button
  QColor hover() const;                  // laid over what the pointer is on
  QPalette palette() const;              // for the toolkit's own parts: menus, selection, tool tips
  double scale() const { return look_.scale; }

  // Once, after the QApplication was made: the widgets' style, what readers of the screen are told of them,
  // and where icons of applications lie when the desktop does not say.
  static void install();

  static QFont font(FontRole role, double scale = 1);
  static QFont buttonFont(double scale = 1);

 private:
  QColor byAppearance(const QColor& light, const QColor& dark) const { return look_.dark ? dark : light; }

  Look look_;
  QColor link_;
};

}  // namespace tarnwick::panel
