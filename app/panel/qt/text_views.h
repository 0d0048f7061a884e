// Texts of the panel, at their final size from the start: laid out, and as widgets.
#pragma once

#include <QFont>
#include <QLabel>
#include <QPainter>
#include <QSize>
#include <QString>
#include <QTextEdit>
#include <QTextLayout>
#include <map>
#include <memory>
#include <tuple>

namespace tarnwick::panel {

// A text as the panel may show it, whatever names it holds: control characters and line ends become blanks,
// and what would reorder the text around it has no effect.
QString printable(const QString& text);
QString printable(const std::string& text);

enum class Digits {
  asTheyCome,
  alike  // each in the middle of a place as wide as the widest
};

// One plain text laid out in lines of a given width, from left to right. Lines break between words; a word
// that is wider than the line breaks anywhere, so that no text is ever cut off. A short last line gets a word
// of the line before for company, unless the text is so long that laying it out once more would be felt.
class TextBlock {
 public:
  // `text` must be printable; a line separator in it stays.
  TextBlock(const QString& text, const QFont& font, int width, Digits digits = Digits::asTheyCome);

  // As wide as the widest line, whole pixels.
  QSize size() const { return size_; }

  // The text as it was laid out: with two words held together where that reads better.
  const QString& text() const { return text_; }

  QStringList lines() const;

  void draw(QPainter& painter, QPoint topLeft) const;

 private:
  int layOut(const QString& text, int width);

  QString text_;
  QTextLayout layout_;
  double lead_ = 0;  // left of the first digit
  QSize size_;
};

// Texts that were laid out before: most of a panel's stay the same from one painting to the next.
class TextBlocks {
 public:
  // `text` must be printable. Never null.
  std::shared_ptr<const TextBlock> of(const QString& text, const QFont& font, int width,
                                      Digits digits = Digits::asTheyCome);

  // Forgets those that were not asked for since the last time.
  void beginPainting();

 private:
  using Key = std::tuple<QString, int, int, int, Digits>;  // text, pixel size, weight, width
  using Known = std::map<Key, std::shared_ptr<const TextBlock>>;

  Known now_;
  Known before_;
};

// A text that is only read. A QLabel for the sake of screen readers; it draws itself.
class TextView : public QLabel {
  Q_OBJECT
 public:
  // `block` is that text laid out.
  TextView(const QString& text, std::shared_ptr<const TextBlock> block, const QFont& font,
           const QColor& colour, QWidget* parent);

  // Another text in the same place, as wide as it needs on one line.
  void replaceText(const QString& text);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QFont font_;
  std::shared_ptr<const TextBlock> block_;  // never null
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
