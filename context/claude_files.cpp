#include "context/claude_files.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace tarnwick {

std::optional<nlohmann::json> jsonObject(std::string_view text) {
  nlohmann::json value = nlohmann::json::parse(text, nullptr, false);
  if (!value.is_object()) return std::nullopt;
  return value;
}

std::optional<nlohmann::json> newest(std::string_view bytes, std::string_view type, std::string_view key) {
  const std::string marker = "\"type\":\"" + std::string(type) + "\"";
  const std::size_t at = bytes.rfind(marker);
  if (at == std::string_view::npos) return std::nullopt;
  const std::size_t before = bytes.rfind('\n', at);
  const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
  const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
  auto line = jsonObject(bytes.substr(start, end - start));
  if (line && !line->contains(key)) return std::nullopt;
  return line;
}

}  // namespace tarnwick
