// Is a property list small enough to be parsed? The systems' parsers trust a list: deep nesting overflows
// their stack, and in a binary list many containers can share one, each of which is unfolded again. So a list
// is measured, without parsing it, before it is handed over. Pure; any bytes.
#pragma once

#include <string_view>

namespace tarnwick {

// The two forms that are read; anything else is neither.
bool isBinaryPropertyList(std::string_view bytes);
bool isXmlPropertyList(std::string_view bytes);

// False too for a list that is malformed on the surface.
bool isHarmlessPropertyList(std::string_view bytes);

}  // namespace tarnwick
