// System symbols drawn with the glyphs of the Material Icons font: sharp at any scale, coloured like text.
#pragma once

#include <QFont>
#include <QString>
#include <string_view>

namespace tarnwick::panel {

// The glyph for a symbol name; the one for "app" when the name is not in the table.
QString glyphOf(std::string_view symbol);

// Does the table hold that name?
bool isKnownSymbol(std::string_view symbol);

QFont symbolFont(double pixels);

// Is the font installed? Where it is not, the symbols that carry a meaning are drawn as signs of a text
// font, and the others as a plain ring.
bool hasSymbolFont();
QString plainSign(std::string_view symbol);  // empty: a ring

}  // namespace tarnwick::panel
