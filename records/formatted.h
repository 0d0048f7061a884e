// Texts with values in them: fmt's formats, checked while compiling. The work is done in one place of the
// program, because every unit that formats by itself would compile the library's machinery anew.
#pragma once

#include <fmt/format.h>

#include <string>

namespace tarnwick {

// The two below for arguments that lost their types; for nobody else.
std::string formattedFrom(fmt::string_view text, fmt::format_args values);
void appendFrom(std::string& out, fmt::string_view text, fmt::format_args values);

// What a checked format says, in the way that the library at hand has for it: older ones convert it, newer
// ones are asked.
template <typename Format>
constexpr fmt::string_view checkedText(const Format& format) {
  if constexpr (requires { format.get(); }) {
    return format.get();
  } else {
    return format;
  }
}

// formatted("{} servers", 4) is "4 servers".
template <typename... Values>
std::string formatted(fmt::format_string<Values...> text, Values&&... values) {
  return formattedFrom(checkedText(text), fmt::make_format_args(values...));
}

template <typename... Values>
void appendFormatted(std::string& out, fmt::format_string<Values...> text, Values&&... values) {
  appendFrom(out, checkedText(text), fmt::make_format_args(values...));
}

}  // namespace tarnwick
