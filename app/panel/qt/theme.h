// The two appearances as colours and fonts. Every text and its ground keep a contrast of at least 4.5 to 1.
// Fonts: Inter at fixed pixel sizes, so that the panel looks the same on every desktop; where Inter is
// missing, the next family of the list is used and the texts wrap elsewhere. Main thread.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

class Theme {
 public:
  explicit Theme(bool dark) : dark_(dark) {}

  QColor colour(ColourRole role) const;
  QColor window() const;      // ground of the whole panel
  QColor outline() const;     // hairline around the panel and its buttons
  QColor link() const;        // also what marks the control that has the keyboard
  QColor buttonFace() const;  // ground of a small button
  QColor hover() const;       // laid over what the pointer is on
  QPalette palette() const;   // for the toolkit's own parts: menus, selection, tool tips

  // Once, after the QApplication was made: the widgets' style, and where icons of applications lie when the
  // desktop does not say.
  static void install();

  static QFont font(FontRole role);
  static QFont buttonFont();

 private:
  bool dark_;
};

}  // namespace tarnwick::panel
