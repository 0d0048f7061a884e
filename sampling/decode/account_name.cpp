#include "sampling/decode/account_name.h"

#include <algorithm>

#include "records/limits.h"
#include "records/text.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

// Takes the next field off the front of the line.
std::string_view takeField(std::string_view& line) {
  const std::string_view field = line.substr(0, line.find(':'));
  line.remove_prefix(std::min(field.size() + 1, line.size()));
  return field;
}

}  // namespace

std::optional<std::string> accountName(std::string_view passwd, std::uint32_t uid) {
  while (!passwd.empty()) {
    std::string_view line = takeLine(passwd);
    const std::string_view name = takeField(line);
    takeField(line);  // the password
    if (name.empty() || wholeNumber<std::uint32_t>(takeField(line)) != uid) continue;
    return repairUtf8(name, longestAccountName);
  }
  return std::nullopt;
}

}  // namespace tarnwick
