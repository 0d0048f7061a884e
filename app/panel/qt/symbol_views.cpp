#include "app/panel/qt/symbol_views.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QTimerEvent>

#include "app/panel/qt/symbol_font.h"
#include "app/panel/qt/theme.h"

namespace tarnwick::panel {
namespace {

constexpr int spokes = 12;
constexpr int spokeMilliseconds = 80;
constexpr qint64 largestEntry = 256LL * 1024;  // a desktop entry is a few kilobytes

// The value of "Icon" in the main group of a desktop entry; empty when it has none.
QString iconOfEntry(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  bool inMainGroup = false;
  for (const QByteArray& raw : file.read(largestEntry).split('\n')) {
    const QByteArray line = raw.trimmed();
    if (line.startsWith('[')) inMainGroup = line == "[Desktop Entry]";
    const qsizetype equals = line.indexOf('=');
    if (inMainGroup && equals > 0 && line.left(equals).trimmed() == "Icon")
      return QString::fromUtf8(line.mid(equals + 1).trimmed());
  }
  return {};
}

void drawGlyph(QPainter& painter, const QRectF& area, std::string_view name, double pixels,
               const QColor& colour, bool bold) {
  QPainterPath outline;
  outline.addText(0, 0, symbolFont(pixels), glyphOf(name));
  // Glyphs fill a square of the font's size that stands on the line through its bottom.
  outline.translate(area.center().x() - pixels / 2, area.center().y() + pixels / 2);
  painter.setPen(bold ? QPen(colour, 0.8) : QPen(Qt::NoPen));
  painter.setBrush(colour);
  painter.drawPath(outline);
}

void drawPlainSign(QPainter& painter, const QRectF& area, std::string_view name, double pixels,
                   const QColor& colour) {
  painter.setPen(QPen(colour, pixels / 10));
  const QString sign = plainSign(name);
  if (sign.isEmpty()) {
    painter.drawEllipse(area.center(), pixels / 3, pixels / 3);
    return;
  }
  QFont font = Theme::font(FontRole::headline);
  font.setPixelSize(static_cast<int>(pixels));
  painter.setFont(font);
  painter.drawText(area.adjusted(-pixels, -pixels, pixels, pixels), Qt::AlignCenter, sign);
}

}  // namespace

QIcon fileIcon(const QString& path) {
  if (!QFileInfo(path).isFile()) return {};  // a pipe would block
  if (!path.endsWith(QLatin1String(".desktop"))) return QImageReader(path).canRead() ? QIcon(path) : QIcon();
  const QString name = iconOfEntry(path);
  if (name.startsWith(QLatin1Char('/'))) return QFileInfo(name).isFile() ? QIcon(name) : QIcon();
  return name.isEmpty() ? QIcon() : QIcon::fromTheme(name);
}

void drawSymbol(QPainter& painter, const QRectF& area, std::string_view name, double pixels,
                const QColor& colour, bool bold) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (hasSymbolFont()) {
    drawGlyph(painter, area, name, pixels, colour, bold);
  } else {
    drawPlainSign(painter, area, name, pixels, colour);
  }
  painter.restore();
}

SymbolView::SymbolView(const Symbol& symbol, const QColor& colour, QWidget* parent)
    : QWidget(parent), symbol_(symbol), colour_(colour) {
  const int side = static_cast<int>(symbol.frame > 0 ? symbol.frame : symbol.size);
  resize(side, side);
  if (symbol_.name.starts_with('/')) {
    file_ = fileIcon(QString::fromStdString(symbol_.name));
    symbol_.name = "app";
  }
  setAccessibleName(QString::fromStdString(symbol.accessibleName));
}

void SymbolView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  // Of what is painted on, which may be a picture at a scale of its own.
  const QPixmap picture = file_.pixmap(size(), painter.deviceTransform().m11());
  if (!picture.isNull()) {
    painter.drawPixmap(rect(), picture);
    return;
  }
  // Letters of a symbol font are drawn a little larger than their point size to look like it.
  drawSymbol(painter, rect(), symbol_.name, symbol_.size * 1.15, colour_,
             symbol_.weight == Symbol::Weight::bold);
}

SpinnerView::SpinnerView(const Spinner& spinner, const QColor& colour, QWidget* parent)
    : QWidget(parent), colour_(colour) {
  resize(static_cast<int>(spinner.size), static_cast<int>(spinner.size));
  setAccessibleName(QString::fromStdString(spinner.accessibleName));
}

void SpinnerView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(width() / 2.0, height() / 2.0);
  const double radius = width() / 2.0;
  for (int spoke = 0; spoke < spokes; ++spoke) {
    QColor colour = colour_;
    colour.setAlphaF(0.15F + 0.85F * static_cast<float>((spoke - turn_ + spokes) % spokes) / (spokes - 1));
    painter.setPen(QPen(colour, radius / 5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(0, -radius * 0.5), QPointF(0, -radius * 0.88));
    painter.rotate(360.0 / spokes);
  }
}

void SpinnerView::showEvent(QShowEvent* /*event*/) { timer_ = startTimer(spokeMilliseconds); }

void SpinnerView::hideEvent(QHideEvent* /*event*/) { killTimer(timer_); }

void SpinnerView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != timer_) return;
  turn_ = (turn_ + 1) % spokes;
  update();
}

}  // namespace tarnwick::panel
