// The texts of --help and --version, and what is said about words that mean nothing.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "app/cli/options.h"

namespace tarnwick {

std::string helpText();
std::string versionText();

// "0.4.0".
std::string_view programVersion();

// "with --snapshot: draw in the dark appearance": what is said about an option in one piece.
std::string fullDescription(const Option& option);

// The text from `column` on, broken between words into lines of at most 80 bytes; the first one begins with
// `head`. A word that is longer stays whole.
std::string paragraph(std::string head, std::size_t column, std::string_view text);

// One sentence that names the words and points to --help. `words`: at least one, unchecked.
std::string unknownWordsText(const std::vector<std::string>& words);

}  // namespace tarnwick
