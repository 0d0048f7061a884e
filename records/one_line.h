// Foreign texts (names, branches, titles) stand in lines that have a meaning: a report's reader must not
// take a part of a name for a line of the report. Pure.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// A valid text in which every run of line ends has become one blank: line feed, vertical tab, form feed,
// carriage return, next line (U+0085), line and paragraph separator (U+2028, U+2029).
std::string oneLine(std::string_view text);

}  // namespace tarnwick
