// The manual page and the completions of the shells, as texts. Pure functions of the table of words.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// In the language of man(7). `released`: the version's day, as 2026-11-21.
std::string manualPage(std::string_view released);

// What offers the words, and after one that takes a value what its value may be.
std::string bashCompletion();
std::string zshCompletion();
std::string fishCompletion();

}  // namespace tarnwick
