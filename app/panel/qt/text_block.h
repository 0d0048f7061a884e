// One plain text laid out in lines of a given width. Lines break between words; a word that is wider than
// the line breaks anywhere, so that no text is ever cut off. A short last line gets a word of the line before
// for company.
#pragma once

#include <QFont>
#include <QPainter>
#include <QSize>
#include <QString>
#include <QTextLayout>

namespace tarnwick::panel {

class TextBlock {
 public:
  TextBlock(const QString& text, const QFont& font, int width, Qt::Alignment alignment = Qt::AlignLeft);

  // As wide as the widest line, whole pixels.
  QSize size() const { return size_; }

  // The text as it was laid out: with two words held together where that reads better.
  const QString& text() const { return text_; }

  void draw(QPainter& painter, QPoint topLeft) const;

 private:
  int layOut(const QString& text, int width, Qt::Alignment alignment);

  QString text_;
  QTextLayout layout_;
  QSize size_;
};

}  // namespace tarnwick::panel
