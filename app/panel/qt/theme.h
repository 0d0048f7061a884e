// The panel's fonts, and its colours in the two appearances; and which of these the desktop wants. Every text
// and its ground keep a contrast of at least 4.5 to 1. Fonts: Inter at fixed pixel sizes, so that the panel
// looks the same on every desktop; where Inter is missing, the next family of the list is used and the texts
// wrap elsewhere. Main thread.
#pragma once

#include <QColor>
#include <QDBusVariant>
#include <QFont>
#include <QObject>
#include <QPalette>
#include <optional>

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

  // Once, after the QApplication was made: the widgets' style, what readers of the screen are told of them,
  // and where icons of applications lie when the desktop does not say.
  static void install();

  static QFont font(FontRole role);
  static QFont buttonFont();

 private:
  bool dark_;
};

// Does the desktop want dark windows? Asked of the desktop portal, which also tells when it changes; until it
// has answered, and where there is none, the palette of the desktop decides.
class Appearance : public QObject {
  Q_OBJECT
 public:
  explicit Appearance(QObject* parent);

  bool isDark() const;

 private Q_SLOTS:
  void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void take(const QVariant& value);

  std::optional<bool> preferred_;  // what the portal said; absent: nothing yet, or no preference
};

}  // namespace tarnwick::panel
