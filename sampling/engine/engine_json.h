// What the container engine says in JSON, as records. Takes bytes and never reads; the engine's texts and
// numbers may be anything. Texts in the results are valid UTF-8.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "records/snapshot.h"

namespace tarnwick {

// The containers of "/containers/json" in the engine's order, `mem` still 0. Entries whose "Id" is
// not one (12 to 64 hexadecimal digits) are left out. Empty for bad JSON and for anything but a list of
// objects.
std::vector<Container> containersOf(std::string_view body);

// The bytes a container really holds, of ".../stats": its usage without the page cache that can be dropped.
// A number that is missing, negative, fractional or beyond belief counts as 0.
std::uint64_t memoryOf(std::string_view body);

// The id is made of letters, digits, "_", "." and "-" and starts with a letter or digit. Only such an id
// may stand in a request's path; any other could change what is asked.
bool isPlainContainerId(std::string_view id);

}  // namespace tarnwick
