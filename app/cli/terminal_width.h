// How wide texts are on a terminal, and how wide the terminal is. Texts are valid UTF-8 without control
// characters.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// The cells that the text takes: two for wide characters, none for combining ones. Pure.
std::size_t cellWidth(std::string_view utf8);

// The text where it fits into so many cells, else its beginning and "…"; combining characters stay with
// theirs. Pure.
std::string cutToCells(std::string_view utf8, std::size_t cells);

inline constexpr int standardOutput = 1;

// The columns of the terminal behind that descriptor; absent when it is none, 80 where it does not tell.
std::optional<std::size_t> terminalColumns(int descriptor);

}  // namespace tarnwick
