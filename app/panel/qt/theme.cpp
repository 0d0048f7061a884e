#include "app/panel/qt/theme.h"

#include <QApplication>
#include <QIcon>
#include <QStandardPaths>
#include <QStringList>
#include <algorithm>

#include "app/panel/qt/access.h"
#include "app/panel/qt/contrast.h"
#include "app/panel/qt/symbol_views.h"

namespace tarnwick::panel {
namespace {

constexpr float deepestTint = 0.05F;  // of the grounds that a link may stand on

QFont interfaceFont(int pixels, QFont::Weight weight, double scale) {
  static const QStringList families{"Inter", "Cantarell", "Noto Sans", "DejaVu Sans", "Sans Serif"};
  QFont font;
  font.setFamilies(families);
  font.setPixelSize(qRound(pixels * scale));
  font.setWeight(weight);
  // Whole-pixel glyph widths would make the text uneven at this size.
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

}  // namespace

// The desktop's own accent, where it can be read.
Theme::Theme(const Look& look) : look_(look) {
  const QColor own = look.highContrast ? byAppearance({0x00, 0x3f, 0x9e}, {0xa8, 0xd2, 0xff})
                                       : byAppearance({0x00, 0x5f, 0xcc}, {0x6c, 0xb2, 0xff});
  QColor tint = colour(ColourRole::label);
  tint.setAlphaF(deepestTint);
  const QColor ground = laidOver(window(), tint);
  link_ = legible(look.accent.value_or(own), ground, look.highContrast ? highContrast : plainContrast);
}

QColor Theme::colour(ColourRole role) const {
  const bool high = look_.highContrast;
  switch (role) {
    case ColourRole::label:
      break;
    case ColourRole::secondary:
      return high ? byAppearance({0x2c, 0x2c, 0x30}, {0xdc, 0xdc, 0xe0})
                  : byAppearance({0x5a, 0x5a, 0x60}, {0xb0, 0xb0, 0xb6});
    case ColourRole::green:
      return high ? byAppearance({0x0a, 0x5c, 0x24}, {0x62, 0xe8, 0x84})
                  : byAppearance({0x1a, 0x8f, 0x3c}, {0x32, 0xd1, 0x58});
    case ColourRole::orange:
      return high ? byAppearance({0x84, 0x38, 0x00}, {0xff, 0xb9, 0x4f})
                  : byAppearance({0xc0, 0x5c, 0x00}, {0xff, 0x9f, 0x0a});
  }
  return high ? byAppearance(Qt::black, Qt::white) : byAppearance({0x1d, 0x1d, 0x1f}, {0xf2, 0xf2, 0xf4});
}

QColor Theme::window() const {
  return look_.highContrast ? byAppearance(Qt::white, Qt::black)
                            : byAppearance({0xf7, 0xf7, 0xf8}, {0x24, 0x24, 0x27});
}

QColor Theme::outline() const {
  return look_.highContrast ? colour(ColourRole::secondary)
                            : byAppearance({0, 0, 0, 46}, {255, 255, 255, 46});
}

QColor Theme::boxOutline() const { return look_.highContrast ? outline() : QColor(Qt::transparent); }

QColor Theme::buttonFace() const { return byAppearance({255, 255, 255}, {255, 255, 255, 30}); }

QColor Theme::hover() const { return byAppearance({0, 0, 0, 14}, {255, 255, 255, 18}); }

QPalette Theme::palette() const {
  const QColor text = colour(ColourRole::label);
  QPalette palette(window());
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
    palette.setColor(role, text);
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::ToolTipBase})
    palette.setColor(role, window());
  palette.setColor(QPalette::Highlight, link_);
  const bool black = contrast(link_, Qt::black) > contrast(link_, Qt::white);
  palette.setColor(QPalette::HighlightedText, black ? Qt::black : Qt::white);
  return palette;
}

void Theme::install() {
  installAccess();
  QApplication::setStyle(QStringLiteral("Fusion"));
  QStringList iconFolders = QIcon::themeSearchPaths();
  for (const QString& data : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
    iconFolders += data + QStringLiteral("/icons");
  iconFolders.erase(std::remove_if(iconFolders.begin(), iconFolders.end(),
                                   [](const QString& folder) {
                                     return folder.startsWith(QLatin1Char('/')) && !isNear(folder);
                                   }),
                    iconFolders.end());
  QIcon::setThemeSearchPaths(iconFolders);
  if (QIcon::themeName().isEmpty()) QIcon::setThemeName(QStringLiteral("hicolor"));
  QIcon::setFallbackThemeName(QStringLiteral("hicolor"));
  QIcon::setFallbackSearchPaths({QStringLiteral("/usr/share/pixmaps")});
}

QFont Theme::font(FontRole role, double scale) {
  switch (role) {
    case FontRole::headline:
    case FontRole::body:
      return interfaceFont(13, QFont::Bold, scale);
    case FontRole::subheadline:
      return interfaceFont(11, QFont::Normal, scale);
    case FontRole::callout:
    case FontRole::number:
      return interfaceFont(12, QFont::Normal, scale);
    case FontRole::cardTitle:
      return interfaceFont(12, QFont::DemiBold, scale);
    case FontRole::foldTitle:
      return interfaceFont(13, QFont::DemiBold, scale);
    case FontRole::caption:
    case FontRole::metric:
      break;
  }
  return interfaceFont(10, QFont::Normal, scale);
}

QFont Theme::buttonFont(double scale) { return interfaceFont(11, QFont::Medium, scale); }

}  // namespace tarnwick::panel
