// UTF-8 as the records hold it. Bytes from outside pass `repairUtf8` once, where they enter; from then
// on every text is valid UTF-8 and its "characters" are Unicode code points.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

// The bytes as valid UTF-8: each invalid sequence becomes one U+FFFD, everything else stays.
std::string repairUtf8(std::string_view bytes);

// The same, at most `most` bytes of it, cut between characters.
std::string repairUtf8(std::string_view bytes, std::size_t most);

// The number of code points of a valid text.
std::size_t characterCount(std::string_view text);

// The first `count` code points of a valid text, or the whole text when it has fewer.
std::string firstCharacters(std::string_view text, std::size_t count);

}  // namespace tarnwick
