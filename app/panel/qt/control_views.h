// Buttons and fold rows as widgets: drawn by the theme, used with the pointer or the keyboard.
#pragma once

#include <QPushButton>

#include "app/panel/panel_tree.h"
#include "app/panel/qt/text_views.h"
#include "app/panel/qt/theme.h"

namespace tarnwick::panel {

// What both kinds share: Return works like the space bar, and a ring or a thick line shows who has the
// keyboard.
class ControlView : public QPushButton {
  Q_OBJECT
 public:
  ControlView(const Theme& theme, QWidget* parent);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void drawFocusRing(QPainter& painter, double radius) const;
  void drawHover(QPainter& painter, double radius) const;
  const Theme& theme() const { return theme_; }

 private:
  Theme theme_;
};

class ButtonView : public ControlView {
  Q_OBJECT
 public:
  // At its final size, no wider than `width`.
  ButtonView(const Button& button, const Theme& theme, TextBlocks& texts, int width, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void drawFace(QPainter& painter) const;
  void drawUnderline(QPainter& painter) const;

  Button::Style style_;
  std::string symbol_;  // empty: shows its title
  QMargins margins_;    // around the title
  std::shared_ptr<const TextBlock> title_;
};

// The row itself is a child that the pointer looks through.
class FoldView : public ControlView {
  Q_OBJECT
 public:
  FoldView(const Fold& fold, const Theme& theme, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

// A tool tip that shows the text as it is, whatever it looks like.
QString plainToolTip(const std::string& text, double scale);

}  // namespace tarnwick::panel
