#include "app/panel/qt/text_views.h"

#include <QFocusEvent>
#include <QTextDocument>
#include <QTextOption>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace tarnwick::panel {
namespace {

constexpr int oneLine = 4000;  // wider than any text that is never wrapped
constexpr int shortLine = 12;  // characters that look lost on a line of their own

// More characters than any text of ours has without somebody's long name in it: laid out once, as it comes.
constexpr qsizetype longText = 1'000;

// Line feeds inside a text stay line breaks; other control characters have no width and no look.
QString printable(QString text) {
  text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
  for (QChar& character : text) {
    if (character.category() == QChar::Other_Control) character = QLatin1Char(' ');
  }
  return text;
}

}  // namespace

TextBlock::TextBlock(const QString& text, const QFont& font, int width)
    : text_(printable(text)), layout_(text_, font) {
  const int lines = layOut(text_, width);
  if (lines < 2 || text_.size() > longText) return;
  const QTextLine last = layout_.lineAt(lines - 1);
  const qsizetype gap = last.textStart() - 1;
  if (last.textLength() > shortLine || gap < 0 || text_.at(gap) != QLatin1Char(' ')) return;
  QString joined = text_;
  joined[gap] = QChar(QChar::Nbsp);
  if (layOut(joined, width) == lines) {
    text_ = joined;
  } else {
    layOut(text_, width);
  }
}

int TextBlock::layOut(const QString& text, int width) {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout_.setText(text);
  layout_.setTextOption(option);
  double height = 0;
  double widest = 0;
  layout_.beginLayout();
  for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
    line.setLineWidth(width);
    line.setPosition({0, height});
    height += line.height();
    widest = std::max(widest, line.naturalTextWidth());
  }
  layout_.endLayout();
  size_ = {static_cast<int>(std::ceil(widest)), static_cast<int>(std::ceil(height))};
  return layout_.lineCount();
}

void TextBlock::draw(QPainter& painter, QPoint topLeft) const { layout_.draw(&painter, topLeft); }

TextView::TextView(const QString& text, const QFont& font, const QColor& colour, int width, QWidget* parent)
    : QLabel(parent),
      font_(font),
      block_(std::make_unique<const TextBlock>(text, font, width)),
      colour_(colour) {
  setTextFormat(Qt::PlainText);
  setText(text);
  resize(block_->size());
}

void TextView::replaceText(const QString& text) {
  block_ = std::make_unique<const TextBlock>(text, font_, oneLine);
  setText(text);
  resize(block_->size());
  update();
}

void TextView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(colour_);
  block_->draw(painter, {0, 0});
}

CopyableText::CopyableText(const QString& text, const QFont& font, const QColor& colour, int width,
                           QWidget* parent)
    : QTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  setFocusPolicy(Qt::ClickFocus);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setAutoFillBackground(false);
  setFont(font);
  QPalette colours = palette();
  colours.setColor(QPalette::Text, colour);
  setPalette(colours);
  document()->setDocumentMargin(0);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setLineWrapMode(QTextEdit::FixedPixelWidth);
  setLineWrapColumnOrWidth(width);
  int needed = width;
  if (text.size() > longText) {
    setPlainText(printable(text));
  } else {
    const TextBlock block(text, font, width);
    setPlainText(block.text());
    needed = std::min(width, block.size().width() + 1);
  }
  // The document's own height: its lines may be a pixel higher than the block's.
  resize(needed, static_cast<int>(std::ceil(document()->size().height())));
  setAccessibleName(text);
}

// The list around it scrolls, not the text.
void CopyableText::wheelEvent(QWheelEvent* event) { event->ignore(); }

void CopyableText::focusOutEvent(QFocusEvent* event) {
  QTextEdit::focusOutEvent(event);
  if (event->reason() == Qt::PopupFocusReason) return;  // its own menu: the mark is about to be copied
  QTextCursor cursor = textCursor();
  cursor.clearSelection();
  setTextCursor(cursor);
}

}  // namespace tarnwick::panel
