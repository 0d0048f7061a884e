#include "app/panel/qt/text_views.h"

#include <QFocusEvent>
#include <QTextDocument>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace tarnwick::panel {

TextView::TextView(const QString& text, const QFont& font, const QColor& colour, int width, QWidget* parent)
    : QLabel(parent), block_(text, font, width), colour_(colour) {
  setTextFormat(Qt::PlainText);
  setText(text);
  resize(block_.size());
}

void TextView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(colour_);
  block_.draw(painter, {0, 0});
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
  const TextBlock block(text, font, width);
  setLineWrapMode(QTextEdit::FixedPixelWidth);
  setLineWrapColumnOrWidth(width);
  setPlainText(block.text());
  // The document's own height: its lines may be a pixel higher than the block's.
  resize(std::min(width, block.size().width() + 1), static_cast<int>(std::ceil(document()->size().height())));
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
