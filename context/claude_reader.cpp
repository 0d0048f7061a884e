#include "context/claude_reader.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string_view>

#include "records/limits.h"
#include "records/text.h"
#include "records/utf8.h"
#include "sampling/decode/iso_time.h"
#include "sampling/decode/json_members.h"

namespace tarnwick {
namespace {

constexpr std::size_t jsonFileBytes = 1U << 20U;

// Transcripts grow without bound, and the newest facts are at the end.
constexpr std::size_t transcriptTailBytes = 1U << 20U;

std::optional<std::string> nameMember(const nlohmann::json& object, const char* key) {
  auto name = textMember(&object, key);
  if (name) name = firstCharacters(*name, longestName);
  return name;
}

}  // namespace

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

std::optional<nlohmann::json> ClaudeReader::json(const std::string& path) {
  const auto text = files_.readSmallFile(path, jsonFileBytes);
  if (!text) return std::nullopt;
  return jsonObject(*text);
}

std::optional<ClaudeWork> ClaudeReader::claudeSession(Pid pid) {
  const auto session = json(home_ + "/.claude/sessions/" + std::to_string(pid) + ".json");
  if (!session) return std::nullopt;
  const auto sessionId = textMember(&*session, "sessionId");
  if (!sessionId) return std::nullopt;
  return transcript(*sessionId);
}

std::optional<ClaudeWork> ClaudeReader::claudeJob(const std::string& dir) {
  const std::string prefix = home_ + "/.claude/jobs/";
  if (!dir.starts_with(prefix)) return std::nullopt;
  const std::size_t start = dir.find_first_not_of('/', prefix.size());
  if (start == std::string::npos) return std::nullopt;
  const std::string jobName = dir.substr(start, dir.find('/', start) - start);
  if (!isPlainFileName(jobName)) return std::nullopt;
  const auto state = json(prefix + jobName + "/state.json");
  if (!state) return std::nullopt;

  const auto sessionId = textMember(&*state, "sessionId");
  ClaudeWork work = sessionId ? transcript(*sessionId) : ClaudeWork{};
  work.job = nameMember(*state, "name");
  work.jobState = nameMember(*state, "state");
  work.jobDir = textMember(&*state, "cwd");
  if (const auto updatedAt = textMember(&*state, "updatedAt")) work.jobUpdated = isoTime(*updatedAt);
  return work;
}

void ClaudeReader::beginCheck() {
  projects_.reset();
  missing_.clear();
}

std::string ClaudeReader::transcriptPath(const std::string& sessionId) {
  const auto known = transcriptPaths.find(sessionId);
  if (known != transcriptPaths.end()) return known->second;
  if (!isPlainFileName(sessionId) || missing_.contains(sessionId)) return {};
  std::string path = findTranscript(sessionId);
  if (path.empty()) {
    missing_.insert(sessionId);
  } else {
    transcriptPaths[sessionId] = path;
  }
  return path;
}

std::string ClaudeReader::findTranscript(const std::string& sessionId) {
  const std::string projects = home_ + "/.claude/projects";
  if (!projects_) projects_ = files_.folderEntries(projects);
  for (const std::string& folder : *projects_) {
    std::string path = projects;
    path.append("/").append(folder).append("/").append(sessionId).append(".jsonl");
    if (files_.isRegularFile(path)) return path;
  }
  return {};
}

ClaudeWork ClaudeReader::transcript(const std::string& sessionId) {
  ClaudeWork work;
  const std::string path = transcriptPath(sessionId);
  if (path.empty()) return work;
  const std::string tail = files_.readFileTail(path, transcriptTailBytes).value_or("");
  if (const auto line = newest(tail, "ai-title", "aiTitle")) work.title = nameMember(*line, "aiTitle");
  if (const auto line = newest(tail, "pr-link", "prNumber")) {
    work.pr = numberMember(&*line, "prNumber");
    work.prRepo = textMember(&*line, "prRepository");
  }
  return work;
}

}  // namespace tarnwick
