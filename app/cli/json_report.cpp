#include "app/cli/json_report.h"

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <variant>

#include "app/cli/help.h"
#include "diagnosis/machine_share.h"
#include "diagnosis/verdict.h"
#include "records/utc_time.h"

namespace tarnwick {
namespace {

using Json = nlohmann::ordered_json;

constexpr int schemaVersion =
    1;  // another one when a key goes or means something else; new keys change nothing
constexpr int indentColumns = 2;

// JSON knows no other numbers.
Json number(double value) { return std::isfinite(value) ? Json(value) : Json(0.0); }

template <typename Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

std::string_view word(ThermalState state) {
  switch (state) {
    case ThermalState::nominal:
      break;
    case ThermalState::fair:
      return "fair";
    case ThermalState::serious:
      return "serious";
    case ThermalState::critical:
      return "critical";
  }
  return "nominal";
}

std::string_view word(Bucket bucket) {
  switch (bucket) {
    case Bucket::now:
      break;
    case Bucket::always:
      return "always";
    case Bucket::leftovers:
      return "leftovers";
  }
  return "now";
}

// In the order of the alternatives.
std::string_view kindOf(const Fix& fix) {
  constexpr std::array<std::string_view, std::variant_size_v<decltype(Fix::kind)>> kinds{
      "signal",
      "quit_app",
      "docker_stop",
      "sim_shutdown",
      "open_settings",
      "ask_automation",
      "close_duplicate_tabs",
      "open_tab",
      "all"};
  return kinds.at(fix.kind.index());
}

void addProcesses(const Fix& fix, Json& processes) {
  if (const auto* signal = std::get_if<Signal>(&fix.kind)) {
    processes.push_back(
        {{"pid", signal->pid}, {"started_at", utcTime(signal->started)}, {"signal_number", signal->number}});
  } else if (const auto* several = std::get_if<All>(&fix.kind)) {
    for (const Fix& part : several->fixes) addProcesses(part, processes);
  }
}

Json actionJson(const Action& action) {
  Json processes = Json::array();
  addProcesses(action.fix, processes);
  return {{"label", action.label},
          {"command", action.fix.command()},
          {"kind", kindOf(action.fix)},
          {"processes", std::move(processes)}};
}

Json actionOrNull(const std::optional<Action>& action) { return action ? actionJson(*action) : Json(); }

Json machineJson(const Snapshot& snapshot) {
  return {{"memory_bytes", snapshot.ram},
          {"memory_in_use_bytes", snapshot.memoryInUse > 0 ? Json(snapshot.memoryInUse) : Json()},
          {"swap_used_bytes", snapshot.swapUsed},
          {"memory_pressure_level", snapshot.pressure},
          {"processor_busy_ratio", number(snapshot.cpuBusy)},
          {"processor_cores", snapshot.cores},
          {"thermal_state", word(snapshot.thermal)},
          {"disk_free_bytes", snapshot.diskFree},
          {"disk_total_bytes", snapshot.diskTotal},
          {"uptime_seconds", number(snapshot.uptime)}};
}

Json findingJson(const Finding& finding, const Guesses& guesses) {
  Json steps = Json::array();
  for (const Step& step : finding.steps)
    steps.push_back({{"text", step.text}, {"action", actionOrNull(step.action)}});
  Json actions = Json::array();
  for (const Action& action : finding.actions) actions.push_back(actionJson(action));
  const auto guess = finding.evidence ? guesses.find(*finding.evidence) : guesses.end();
  return {{"id", finding.id},
          {"bucket", word(finding.bucket)},
          {"title", finding.title},
          {"guess", guess == guesses.end() ? Json() : Json(guess->second)},
          {"detail", finding.detail},
          {"memory_bytes", finding.bytes},
          {"steps", std::move(steps)},
          {"actions", std::move(actions)},
          {"evidence", orNull(finding.evidence)},
          {"subject", finding.subject},
          {"summary", finding.summary},
          {"metric", orNull(finding.metric)},
          {"icon", finding.icon},
          {"impact_ratio", number(finding.impact)}};
}

Json rowJson(const BiggestUser& user, const Snapshot& snapshot) {
  return {
      {"kind", tarnwick::word(user.kind)}, {"what", user.what},
      {"memory_bytes", user.bytes},        {"processor_ratio", number(processorShare(user.cpu, snapshot))},
      {"process_count", user.count},       {"started_at", user.since ? Json(utcTime(*user.since)) : Json()},
      {"started_by", orNull(user.who)},    {"project", orNull(user.project)},
      {"branch", orNull(user.branch)},     {"stop", actionOrNull(user.stop)}};
}

Json usersJson(const BiggestUsers& users, const Snapshot& snapshot) {
  Json rows = Json::array();
  for (const BiggestUser& user : users.rows) rows.push_back(rowJson(user, snapshot));
  return {{"sorted_by", users.scarce == Scarce::memory ? "memory" : "processor"},
          {"rows", std::move(rows)},
          {"rest",
           {{"memory_bytes", users.restBytes},
            {"processor_ratio", number(processorShare(users.restCpu, snapshot))},
            {"process_count", users.restCount}}},
          {"total",
           {{"memory_bytes", users.bytesInUse},
            {"processor_ratio", number(processorShare(users.cpuInUse, snapshot))}}}};
}

}  // namespace

std::string jsonReport(const JsonSubject& subject, JsonLayout layout) {
  const Verdict answer = verdict(subject.snapshot, subject.findings);
  Json findings = Json::array();
  for (const Finding& finding : subject.findings) findings.push_back(findingJson(finding, subject.guesses));
  const Json document{
      {"schema", schemaVersion},
      {"program", {{"name", "tarnwick"}, {"version", programVersion()}}},
      {"checked_at", utcTime(subject.snapshot.now)},
      {"machine", machineJson(subject.snapshot)},
      {"verdict", {{"ok", answer.ok}, {"headline", answer.headline}, {"cause", orNull(answer.cause)}}},
      {"findings", std::move(findings)},
      {"biggest_users", usersJson(subject.users, subject.snapshot)},
      {"not_read", subject.leftOut}};
  return document.dump(layout == JsonLayout::indented ? indentColumns : -1, ' ', false,
                       Json::error_handler_t::replace) +
         "\n";
}

}  // namespace tarnwick
