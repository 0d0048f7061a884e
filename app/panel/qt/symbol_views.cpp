#include "app/panel/qt/symbol_views.h"

#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QTimerEvent>
#include <algorithm>
#include <array>

#include "app/panel/qt/access.h"
#include "app/panel/qt/theme.h"
#include "sampling/decode/desktop_entry.h"
#include "system/mounts.h"
#include "system/posix/local_way.h"

namespace tarnwick::panel {
namespace {

constexpr int spokes = 12;
constexpr int spokeMilliseconds = 80;

struct Glyph {
  std::string_view symbol;
  char16_t code;       // in the font's private area
  char16_t plain = 0;  // a sign that text fonts have; 0: none
};

// Sorted by symbol; the first stands for every name that is not there.
constexpr std::array<Glyph, 26> glyphs{{
    {"app", 0xe069},                                    // web_asset
    {"arrow.clockwise", 0xe5d5, 0x21bb},                // refresh
    {"checkmark.circle.fill", 0xe86c, 0x2713},          // check_circle
    {"chevron.down", 0xe5cf, 0x25be},                   // expand_more
    {"chevron.right", 0xe5cc, 0x25b8},                  // chevron_right
    {"cpu", 0xe322},                                    // memory
    {"cup.and.saucer", 0xe541},                         // local_cafe
    {"ellipsis.circle", 0xef64, 0x22ef},                // pending
    {"exclamationmark.circle.fill", 0xe000, 0x0021},    // error
    {"exclamationmark.triangle.fill", 0xe002, 0x0021},  // warning
    {"gauge.with.dots.needle.67percent", 0xe9e4},       // speed
    {"gearshape", 0xe8b8},                              // settings
    {"globe", 0xe80b},                                  // public
    {"hourglass", 0xe88b},                              // hourglass_empty
    {"icloud", 0xe2bd},                                 // cloud
    {"internaldrive", 0xe1db},                          // storage
    {"iphone", 0xe325},                                 // phone_iphone
    {"magnifyingglass", 0xe8b6},                        // search
    {"memorychip", 0xe623},                             // sd_card
    {"photo.on.rectangle.angled", 0xe413},              // photo_library
    {"power", 0xe8ac},                                  // power_settings_new
    {"server.rack", 0xe875},                            // dns
    {"shippingbox", 0xe1a1},                            // inventory_2
    {"sparkles", 0xe65f},                               // auto_awesome
    {"terminal", 0xeb8e},                               // terminal
    {"thermometer.high", 0xe1ff},                       // device_thermostat
}};
static_assert(std::is_sorted(glyphs.begin(), glyphs.end(),
                             [](const Glyph& a, const Glyph& b) { return a.symbol < b.symbol; }));

constexpr const char* symbolFamily = "Material Icons";

const Glyph* glyphNamed(std::string_view symbol) {
  const auto found =
      std::lower_bound(glyphs.begin(), glyphs.end(), symbol,
                       [](const Glyph& glyph, std::string_view name) { return glyph.symbol < name; });
  return found != glyphs.end() && found->symbol == symbol ? &*found : nullptr;
}

// Empty: a ring.
QString plainSign(std::string_view symbol) {
  const Glyph* glyph = glyphNamed(symbol);
  return glyph == nullptr || glyph->plain == 0 ? QString() : QString(QChar(glyph->plain));
}

QFont symbolFont(double pixels) {
  QFont font(symbolFamily);
  font.setPixelSize(static_cast<int>(pixels));
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setStyleStrategy(QFont::NoFontMerging);
  return font;
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

// What a desktop entry names as its icon; empty when it names none.
QString iconOfEntry(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray text = file.read(desktopEntryLimit);
  const auto entry = desktopEntryText({text.constData(), static_cast<std::size_t>(text.size())}, {});
  return entry ? QString::fromStdString(entry->icon) : QString();
}

}  // namespace

QString glyphOf(std::string_view symbol) {
  const Glyph* glyph = glyphNamed(symbol);
  return QString(QChar(glyph == nullptr ? glyphs.front().code : glyph->code));
}

bool isNear(const QString& path) {
  const DistantPoints distant = distantMounts();
  return distant && path.startsWith(QLatin1Char('/')) && wayTo(path.toStdString(), *distant).local;
}

QIcon fileIcon(const QString& path) {
  if (!isNear(path) || !QFileInfo(path).isFile()) return {};  // a pipe would block
  if (!path.endsWith(QLatin1String(".desktop"))) return QImageReader(path).canRead() ? QIcon(path) : QIcon();
  const QString name = iconOfEntry(path);
  if (name.startsWith(QLatin1Char('/')))
    return isNear(name) && QFileInfo(name).isFile() ? QIcon(name) : QIcon();
  return name.isEmpty() ? QIcon() : QIcon::fromTheme(name);
}

void drawSymbol(QPainter& painter, const QRectF& area, std::string_view name, double pixels,
                const QColor& colour, bool bold) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  static const bool hasGlyphs = QFontDatabase::hasFamily(symbolFamily);
  if (hasGlyphs) {
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
  giveRole(this, QAccessible::Graphic);
  if (!symbol.accessibleName.empty()) setAccessibleName(QString::fromStdString(symbol.accessibleName));
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
  giveRole(this, QAccessible::Animation);
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
