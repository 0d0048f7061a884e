#include "records/formatted.h"

#include <iterator>

namespace tarnwick {

std::string formattedFrom(fmt::string_view text, fmt::format_args values) {
  return fmt::vformat(text, values);
}

void appendFrom(std::string& out, fmt::string_view text, fmt::format_args values) {
  fmt::vformat_to(std::back_inserter(out), text, values);
}

}  // namespace tarnwick
