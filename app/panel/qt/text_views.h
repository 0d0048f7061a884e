// Texts of the panel, at their final size from the start: laid out, and as widgets.
#pragma once

#include <QFont>
#include <QLabel>
#include <QPainter>
#include <QSize>
#include <QString>
#include <QTextEdit>
#include <QTextLayout>
#include <memory>

namespace tarnwick::panel {

// One plain text laid out in lines of a given width. Lines break between words; a word that is wider than
// the line breaks anywhere, so that no text is ever cut off. A short last line gets a word of the line before
// for company, unless the text is so long that laying it out once more would be felt.
class TextBlock {
 public:
  TextBlock(const QString& text, const QFont& font, int width);

  // As wide as the widest line, whole pixels.
  QSize size() const { return size_; }

  // The text as it was laid out: with two words held together where that reads better.
  const QString& text() const { return text_; }

  void draw(QPainter& painter, QPoint topLeft) const;

 private:
  int layOut(const QString& text, int width);

  QString text_;
  QTextLayout layout_;
  QSize size_;
};

// A text that is only read. A QLabel for the sake of screen readers; it draws itself.
class TextView : public QLabel {
  Q_OBJECT
 public:
  TextView(const QString& text, const QFont& font, const QColor& colour, int width, QWidget* parent);

  // Another text in the same place, as wide as it needs on one line.
  void replaceText(const QString& text);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QFont font_;
  std::unique_ptr<const TextBlock> block_;  // never null
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
