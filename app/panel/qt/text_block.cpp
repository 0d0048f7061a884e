#include "app/panel/qt/text_block.h"

#include <QTextOption>
#include <cmath>

namespace tarnwick::panel {
namespace {

constexpr int shortLine = 12;  // characters that look lost on a line of their own

// Line feeds inside a text stay line breaks; other control characters have no width and no look.
QString printable(QString text) {
  text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
  for (QChar& character : text) {
    if (character.category() == QChar::Other_Control) character = QLatin1Char(' ');
  }
  return text;
}

}  // namespace

TextBlock::TextBlock(const QString& text, const QFont& font, int width, Qt::Alignment alignment)
    : text_(printable(text)), layout_(text_, font) {
  const int lines = layOut(text_, width, alignment);
  if (lines < 2) return;
  const QTextLine last = layout_.lineAt(lines - 1);
  const qsizetype gap = last.textStart() - 1;
  if (last.textLength() > shortLine || gap < 0 || text_.at(gap) != QLatin1Char(' ')) return;
  QString joined = text_;
  joined[gap] = QChar(QChar::Nbsp);
  if (layOut(joined, width, alignment) == lines) {
    text_ = joined;
  } else {
    layOut(text_, width, alignment);
  }
}

int TextBlock::layOut(const QString& text, int width, Qt::Alignment alignment) {
  QTextOption option(alignment);
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

}  // namespace tarnwick::panel
