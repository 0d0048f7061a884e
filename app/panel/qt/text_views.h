// Texts of the panel as widgets, at their final size from the start.
#pragma once

#include <QLabel>
#include <QTextEdit>

#include "app/panel/qt/text_block.h"

namespace tarnwick::panel {

// A text that is only read. A QLabel for the sake of screen readers; it draws itself.
class TextView : public QLabel {
  Q_OBJECT
 public:
  TextView(const QString& text, const QFont& font, const QColor& colour, int width, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  TextBlock block_;
  QColor colour_;
};

// A text that can be marked and copied with the pointer. The keyboard passes it by.
class CopyableText : public QTextEdit {
  Q_OBJECT
 public:
  CopyableText(const QString& text, const QFont& font, const QColor& colour, int width, QWidget* parent);

 protected:
  void wheelEvent(QWheelEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
};

}  // namespace tarnwick::panel
