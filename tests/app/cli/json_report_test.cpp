// The JSON document: it is what docs/report.schema.json says, for every demo and whatever names hold, and
// says what the text says.

#include "app/cli/json_report.h"

#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include "app/cli/top_table.h"
#include "app/demo/demo.h"
#include "app/demo/demo_check.h"
#include "app/demo/self_test.h"
#include "diagnosis/verdict.h"
#include "records/utf8.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "tests/support/machines.h"

namespace {

using nlohmann::json;

// Every object with the keys that it names and no others, so that none stays undescribed.
void forbidMoreKeys(json& schema) {
  if (schema.is_object() && schema.contains("properties")) schema["additionalProperties"] = false;
  if (schema.is_structured())
    for (json& part : schema) forbidMoreKeys(part);
}

// What is wrong with the document; empty when nothing is.
std::string faultsOf(const std::string& document) {
  using Adapter = valijson::adapters::NlohmannJsonAdapter;
  const json parsed = json::parse(document, nullptr, false);
  if (parsed.is_discarded()) return "it is no JSON";
  json schemaText = json::parse(textOfFile(TARNWICK_SOURCE_DIR "/docs/report.schema.json"));
  forbidMoreKeys(schemaText);
  valijson::Schema schema;
  valijson::SchemaParser().populateSchema(Adapter(schemaText), schema);
  valijson::ValidationResults results;
  if (valijson::Validator().validate(schema, Adapter(parsed), &results)) return {};
  std::string faults;
  for (const auto& result : results) {
    for (const std::string& step : result.context) faults += step;
    faults += ": " + result.description + "\n";
  }
  return faults;
}

std::string documentOf(const Check& check, const Guesses& guesses = {},
                       JsonLayout layout = JsonLayout::indented) {
  return jsonReport({check.snapshot, check.found, guesses, check.users, check.leftOut}, layout);
}

// The report made of nothing but the document.
std::string textFrom(const json& document, const Snapshot& snapshot) {
  const auto bracketed = [](const json& action) {
    return "[" + action["label"].get<std::string>() + "]  " + action["command"].get<std::string>();
  };
  std::string report = header(snapshot) + "\n";
  for (const auto& [bucket, title] :
       {std::pair("now", "BUSY NOW"), {"always", "ALWAYS ON"}, {"leftovers", "FORGOTTEN"}}) {
    std::string blocks;
    for (const json& finding : document["findings"]) {
      if (finding["bucket"] != bucket) continue;
      blocks += "  " + finding["title"].get<std::string>() + "\n";
      if (!finding["guess"].is_null()) blocks += "  ✨ " + finding["guess"].get<std::string>() + "\n";
      blocks += "  " + finding["detail"].get<std::string>() + "\n";
      if (!finding["steps"].empty()) blocks += "  What you can do:\n";
      int number = 0;
      for (const json& step : finding["steps"])
        blocks += "    " + std::to_string(++number) + ". " + step["text"].get<std::string>() +
                  (step["action"].is_null() ? "" : "  " + bracketed(step["action"])) + "\n";
      for (const json& action : finding["actions"]) blocks += "    " + bracketed(action) + "\n";
    }
    if (!blocks.empty()) report += "\n" + std::string(title) + "\n" + blocks;
  }
  return document["findings"].empty() ? report + "\nNo known cause found.\n" : report;
}

TEST(JsonReport, OfEveryDemoIsValidAndSaysWhatTheTextSays) {
  const DemoReader reader{{4242, 501, "/Users/x"}, testNow, [](Timestamp) { return std::string("a day"); }};
  for (const ExpectedDiagnosis& known : expectedDiagnoses()) {
    const Text scenario = known.scenario ? Text(*known.scenario) : Text();
    const Check check = checkDemo(scenario, reader, 10).value();
    Guesses guesses;
    for (const Finding& finding : check.found)
      if (finding.evidence) guesses[*finding.evidence] = "It probably serves.";
    const std::string document = documentOf(check, guesses);
    EXPECT_EQ(faultsOf(document), "") << scenario.value_or("base");
    const json parsed = json::parse(document);
    EXPECT_EQ(textFrom(parsed, check.snapshot), text(check.snapshot, check.found, guesses));
    EXPECT_EQ(parsed["verdict"]["headline"], known.headline);
    EXPECT_EQ(parsed["machine"]["memory_bytes"], check.snapshot.ram);
    std::uint64_t bytes = 0;
    for (const json& row : parsed["biggest_users"]["rows"]) bytes += row["memory_bytes"].get<std::uint64_t>();
    EXPECT_EQ(bytes + parsed["biggest_users"]["rest"]["memory_bytes"].get<std::uint64_t>(),
              parsed["biggest_users"]["total"]["memory_bytes"]);
    const std::string line = documentOf(check, guesses, JsonLayout::oneLine);
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    EXPECT_EQ(json::parse(line), parsed);
  }
}

TEST(JsonReport, OfALiveCheckIsValid) {
  for (const char* words : {"--json", "--top 100 --json"}) {
    const Strings line{"-c", std::string("\"$0\" ") + words + " 2>/dev/null", TARNWICK_PROGRAM};
    EXPECT_EQ(faultsOf(ToolRunner::finish(PosixToolRunner().start("/bin/sh", line))), "") << words;
  }
}

TEST(JsonReport, HoldsNamesOfAnyKindAndEveryKindOfRemedy) {
  const std::string hostile =
      "\"\\\n\r\t\x1B[31m\xFF\xC3(\u202E\uFEFF</script>\x01\x7F\xF0\x9F" + std::string(1, '\0');
  All all{{{Signal{7, 9, timestamp(1'790'000'000.75)}},
           {DockerStop{hostile}},
           {All{{{Signal{8, 15, timestamp(-1e300)}}}}}}};
  Check check{.snapshot = machine(), .leftOut = {hostile}};
  check.snapshot.uptime = std::nan("");
  Finding odd{
      .id = hostile, .bucket = Bucket::leftovers, .title = hostile, .detail = hostile, .bytes = 1ULL << 62U};
  odd.evidence = odd.metric = hostile;
  odd.impact = std::numeric_limits<double>::infinity();
  for (const Fix& fix :
       {Fix{all}, Fix{QuitApp{hostile}}, Fix{SimShutdown{hostile}}, Fix{OpenSettings{hostile}},
        Fix{AskAutomation{hostile}}, Fix{CloseDuplicateTabs{hostile}}, Fix{OpenTab{hostile, hostile}}}) {
    odd.actions = {{hostile, fix}};
    odd.steps = {{hostile, odd.actions[0]}, {hostile}};
    check.found.push_back(odd);
  }
  BiggestUser user{
      .kind = UserKind::sameCommand, .what = hostile, .bytes = 1ULL << 62U, .since = timestamp(1e300)};
  user.who = user.project = user.branch = hostile;
  user.stop = Action{hostile, {all}};
  check.users.rows = {user};
  check.users.restBytes = -5;
  const std::string document = documentOf(check, {{hostile, hostile}});
  EXPECT_EQ(faultsOf(document), "");
  EXPECT_THAT(faultsOf("{}"), HasSubstr("verdict"));
  EXPECT_EQ(repairUtf8(document), document);
  const json parsed = json::parse(document);
  EXPECT_EQ(parsed["findings"][0]["actions"][0]["processes"],
            json::parse(R"([{"pid":7,"started_at":"2026-09-21T14:13:20Z","signal_number":9},
                            {"pid":8,"started_at":"0000-01-01T00:00:00Z","signal_number":15}])"));
  EXPECT_EQ(parsed["biggest_users"]["rows"][0]["started_at"], "9999-12-31T23:59:59Z");
  std::string kinds;
  for (const json& finding : parsed["findings"])
    kinds += finding["actions"][0]["kind"].get<std::string>() + " ";
  EXPECT_EQ(kinds, "all quit_app sim_shutdown open_settings ask_automation close_duplicate_tabs open_tab ");
  EXPECT_EQ(parsed["not_read"].size(), 1U);
}

}  // namespace
