#include "app/panel/qt/symbol_font.h"

#include <QFontDatabase>
#include <algorithm>
#include <array>

namespace tarnwick::panel {
namespace {

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

constexpr const char* family = "Material Icons";

const Glyph* find(std::string_view symbol) {
  const auto found =
      std::lower_bound(glyphs.begin(), glyphs.end(), symbol,
                       [](const Glyph& glyph, std::string_view name) { return glyph.symbol < name; });
  return found != glyphs.end() && found->symbol == symbol ? &*found : nullptr;
}

}  // namespace

QString glyphOf(std::string_view symbol) {
  const Glyph* glyph = find(symbol);
  return QString(QChar(glyph == nullptr ? glyphs.front().code : glyph->code));
}

QString plainSign(std::string_view symbol) {
  const Glyph* glyph = find(symbol);
  return glyph == nullptr || glyph->plain == 0 ? QString() : QString(QChar(glyph->plain));
}

bool isKnownSymbol(std::string_view symbol) { return find(symbol) != nullptr; }

QFont symbolFont(double pixels) {
  QFont font(family);
  font.setPixelSize(static_cast<int>(pixels));
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setStyleStrategy(QFont::NoFontMerging);
  return font;
}

bool hasSymbolFont() { return QFontDatabase::hasFamily(family); }

}  // namespace tarnwick::panel
