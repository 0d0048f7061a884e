#include "app/panel/qt/text_views.h"

#include <QFocusEvent>
#include <QTextDocument>
#include <QTextOption>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick::panel {
namespace {

constexpr int oneLine = 4000;  // wider than any text that is never wrapped
constexpr int shortLine = 12;  // characters that look lost on a line of their own

// More characters than any text of ours has without somebody's long name in it: laid out once, as it comes.
constexpr qsizetype longText = 1'000;

bool reordersText(QChar character) {
  const auto code = character.unicode();
  return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

bool endsLine(QChar character) {
  return character.category() == QChar::Other_Control || character.category() == QChar::Separator_Line ||
         character.category() == QChar::Separator_Paragraph;
}

// Line feeds stay line breaks.
QString printableLines(const QString& text) {
  QStringList lines = text.split(QLatin1Char('\n'));
  for (QString& line : lines) line = printable(line);
  return lines.join(QChar(QChar::LineSeparator));
}

QTextOption wrapping() {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTextDirection(Qt::LeftToRight);  // also where somebody's name in another script begins the text
  return option;
}

bool isDigit(QChar character) { return character >= QLatin1Char('0') && character <= QLatin1Char('9'); }

// What each digit lacks to the widest, half of it before the digit and half behind. The first has nothing
// before it to be spaced: its half is `lead`.
QList<QTextLayout::FormatRange> digitSpacing(const QString& text, const QFont& font, double& lead) {
  const QFontMetricsF metrics(font);
  double widest = 0;
  for (char digit = '0'; digit <= '9'; ++digit)
    widest = std::max(widest, metrics.horizontalAdvance(QLatin1Char(digit)));
  QList<double> behind(text.size(), 0);
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (!isDigit(text[i])) continue;
    const double half = (widest - metrics.horizontalAdvance(text[i])) / 2;
    behind[i] += half;
    (i == 0 ? lead : behind[i - 1]) += half;
  }
  QList<QTextLayout::FormatRange> ranges;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (behind[i] <= 0 || text[i].unicode() > 0x7f) continue;
    QTextCharFormat format;
    format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
    format.setFontLetterSpacing(behind[i]);
    ranges.append({static_cast<int>(i), 1, format});
  }
  return ranges;
}

}  // namespace

QString printable(const QString& text) {
  QString shown = text;
  for (QChar& character : shown) {
    if (endsLine(character)) character = QLatin1Char(' ');
    if (reordersText(character)) character = QChar(0x200B);  // has neither width nor effect
  }
  return shown;
}

QString printable(const std::string& text) { return printable(QString::fromStdString(text)); }

TextBlock::TextBlock(const QString& text, const QFont& font, int width, Digits digits)
    : text_(text), layout_(text_, font) {
  if (digits == Digits::alike) layout_.setFormats(digitSpacing(text_, font, lead_));
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
  layout_.setText(text);
  layout_.setTextOption(wrapping());
  double height = 0;
  double widest = 0;
  layout_.beginLayout();
  for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
    line.setLineWidth(width - lead_);
    line.setPosition({lead_, height});
    height += line.height();
    widest = std::max(widest, line.naturalTextWidth());
  }
  layout_.endLayout();
  size_ = {static_cast<int>(std::ceil(lead_ + widest)), static_cast<int>(std::ceil(height))};
  return layout_.lineCount();
}

QStringList TextBlock::lines() const {
  QStringList all;
  for (int i = 0; i < layout_.lineCount(); ++i)
    all.append(text_.mid(layout_.lineAt(i).textStart(), layout_.lineAt(i).textLength()));
  return all;
}

void TextBlock::draw(QPainter& painter, QPoint topLeft) const { layout_.draw(&painter, topLeft); }

std::shared_ptr<const TextBlock> TextBlocks::of(const QString& text, const QFont& font, int width,
                                                Digits digits) {
  const Key key{text, font.pixelSize(), font.weight(), width, digits};
  std::shared_ptr<const TextBlock>& block = now_[key];
  if (!block) {
    const auto known = before_.find(key);
    block =
        known == before_.end() ? std::make_shared<const TextBlock>(text, font, width, digits) : known->second;
  }
  return block;
}

void TextBlocks::beginPainting() { before_ = std::exchange(now_, {}); }

TextView::TextView(const QString& text, std::shared_ptr<const TextBlock> block, const QFont& font,
                   const QColor& colour, QWidget* parent)
    : QLabel(parent), font_(font), block_(std::move(block)), colour_(colour) {
  setTextFormat(Qt::PlainText);
  setText(text);
  resize(block_->size());
}

void TextView::replaceText(const QString& text) {
  block_ = std::make_shared<const TextBlock>(printable(text), font_, oneLine);
  setText(printable(text));
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
  document()->setDefaultTextOption(wrapping());
  setLineWrapMode(QTextEdit::FixedPixelWidth);
  setLineWrapColumnOrWidth(width);
  const QString shown = printableLines(text);
  int needed = width;
  if (shown.size() > longText) {
    setPlainText(shown);
  } else {
    const TextBlock block(shown, font, width);
    setPlainText(block.text());
    if (block.lines().size() == 1) needed = std::min(width, block.size().width() + 1);
  }
  // The document's own height: its lines may be a pixel higher than the block's.
  resize(needed, static_cast<int>(std::ceil(document()->size().height())));
  setAccessibleName(printable(text));
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
