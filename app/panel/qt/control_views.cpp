#include "app/panel/qt/control_views.h"

#include <QKeyEvent>
#include <QToolTip>

#include "app/panel/qt/access.h"
#include "app/panel/qt/symbol_views.h"

namespace tarnwick::panel {
namespace {

constexpr QMarginsF faceMargins(10, 4, 10, 4);  // around the title of a button that has a face
constexpr QMarginsF linkMargins(0, 1, 0, 1);    // a link stands where a text would; room for its underline
constexpr double symbolSide = 24;               // what the pointer can hit around a lone symbol
constexpr double symbolSize = 17;
constexpr double tipWidth = 360;
constexpr qsizetype shortTip = 40;      // characters; surely one line
constexpr qsizetype longestTip = 1500;  // more of them would not fit on every screen

QMargins marginsOf(const Button& button, const Theme& theme) {
  return ((button.style == Button::Style::small ? faceMargins : linkMargins) * theme.scale()).toMargins();
}

}  // namespace

// The toolkit guesses whether a tip is plain or marked up, and does not break long words: so it gets lines
// that are broken already, as what is marked up beyond doubt.
QString plainToolTip(const std::string& text, double scale) {
  if (text.empty()) return {};
  QString shown = printable(text);
  if (shown.size() > longestTip) shown = shown.left(longestTip - 1) + QChar(0x2026);
  if (shown.size() > shortTip)
    shown = TextBlock(shown, QToolTip::font(), qRound(tipWidth * scale)).lines().join(QLatin1Char('\n'));
  return QStringLiteral("<p style='white-space:pre'>%1</p>").arg(shown.toHtmlEscaped());
}

ControlView::ControlView(const Theme& theme, QWidget* parent) : QPushButton(parent), theme_(theme) {
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
}

void ControlView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
  } else {
    QPushButton::keyPressEvent(event);
  }
}

void ControlView::drawFocusRing(QPainter& painter, double radius) const {
  if (!hasFocus()) return;
  painter.setPen(QPen(theme_.link(), 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
}

void ControlView::drawHover(QPainter& painter, double radius) const {
  if (!isEnabled() || !(underMouse() || isDown())) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme_.hover());
  const QRectF area(rect());
  painter.drawRoundedRect(area, radius, radius);
  if (isDown()) painter.drawRoundedRect(area, radius, radius);
}

ButtonView::ButtonView(const Button& button, const Theme& theme, TextBlocks& texts, int width,
                       QWidget* parent)
    : ControlView(theme, parent),
      style_(button.style),
      symbol_(button.title.empty() ? button.symbol : std::string()),
      margins_(marginsOf(button, theme)),
      title_(texts.of(printable(button.title), Theme::buttonFont(theme.scale()),
                      width - margins_.left() - margins_.right())) {
  setObjectName(QString::fromStdString(button.id));
  setToolTip(plainToolTip(button.toolTip, theme.scale()));
  setAccessibleName(printable(button.accessibleName));
  setAccessibleDescription(printable(button.toolTip));
  setEnabled(button.enabled);
  setCursor(button.style == Button::Style::link ? Qt::PointingHandCursor : Qt::ArrowCursor);
  if (button.title.empty()) {
    resize(QSize(1, 1) * symbolSide * theme.scale());
  } else {
    resize(title_->size().grownBy(margins_));
  }
}

void ButtonView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(0.5);
  if (style_ == Button::Style::small) drawFace(painter);
  if (style_ != Button::Style::link) drawHover(painter, 6);
  if (!symbol_.empty()) {
    drawSymbol(painter, rect(), symbol_, symbolSize * theme().scale(), theme().colour(ColourRole::secondary));
  } else {
    const bool link = style_ == Button::Style::link;
    painter.setPen(link ? theme().link() : theme().colour(ColourRole::label));
    title_->draw(painter, {margins_.left(), margins_.top()});
    if (link) drawUnderline(painter);
  }
  if (style_ != Button::Style::link) drawFocusRing(painter, 6);
}

// What the ring is to the other styles: thin under the pointer, thick with the keyboard.
void ButtonView::drawUnderline(QPainter& painter) const {
  if (!underMouse() && !hasFocus()) return;
  const int thickness = hasFocus() ? 2 : 1;
  painter.fillRect(0, height() - thickness, width(), thickness, theme().link());
}

void ButtonView::drawFace(QPainter& painter) const {
  painter.setPen(QPen(theme().outline(), 1));
  painter.setBrush(theme().buttonFace());
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
}

FoldView::FoldView(const Fold& fold, const Theme& theme, QWidget* parent) : ControlView(theme, parent) {
  giveRole(this, QAccessible::Button);
  setObjectName(QString::fromStdString(fold.id));
  setAccessibleName(printable(fold.accessibleName));
  setCheckable(true);
  setChecked(fold.open);
}

void FoldView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  drawHover(painter, 6);
  drawFocusRing(painter, 6);
}

}  // namespace tarnwick::panel
