// System symbols drawn with the glyphs of the Material Icons font: sharp at any scale, coloured like text.
#pragma once

#include <QFont>
#include <QString>
#include <string_view>

namespace tarnwick {

// The glyph for a symbol name; the one for "app" when the name is not in the table.
QString glyphOf(std::string_view symbol);

// Does the table hold that name?
bool isKnownSymbol(std::string_view symbol);

// The font at that pixel size. False from hasSymbolFont(): it is not installed, and a symbol is drawn as a
// plain ring instead.
QFont symbolFont(double pixels);
bool hasSymbolFont();

}  // namespace tarnwick
