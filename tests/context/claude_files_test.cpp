#include "context/claude_files.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace tarnwick {
namespace {

TEST(ClaudeFiles, OnlyAnObjectIsAnObject) {
  EXPECT_TRUE(jsonObject(R"( {"a": [1, {"b": null}]} )"));
  for (const std::string& text : {std::string("[1]"), std::string("null"), std::string(),
                                  std::string("{\"a\":1"), std::string("{\"a\":1e999}"),
                                  std::string("{\"a\":\"\xFF\"}"), "{\"a\":" + std::string(1'000'000, '[')}) {
    EXPECT_FALSE(jsonObject(text)) << text.substr(0, 40);
  }
}

TEST(ClaudeFiles, TheNewestMarkedLineIsTheOnlyOneTried) {
  const std::string older = R"({"type":"ai-title","aiTitle":"old"})";
  const std::string newer = R"({"n":1,"type":"ai-title","aiTitle":"new"})";
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {older + "\n" + newer + "\n{\"type\":\"user\"}\n", "new"},
      {"\n\n" + newer + "\r\n", "new"},
      {older + "\n" + R"({"type":"ai-title","other":1})" + "\n", std::nullopt},
      {older + "\n" + newer.substr(0, newer.size() - 3), std::nullopt},
      {newer.substr(3), std::nullopt},
      {older + "\n" + R"({"type": "ai-title","aiTitle":"spaced"})", "old"},
      {older + "\n" + R"({"type":"ai-titles","aiTitle":"longer"})", "old"},
      {older + "\n" + R"({"type":"ai-title","aiTitle":7})", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [bytes, title] : cases) {
    const auto line = newest(bytes, "ai-title", "aiTitle");
    EXPECT_EQ(line ? textMember(*line, "aiTitle") : std::nullopt, title) << bytes;
  }
}

TEST(ClaudeFiles, NumbersAreWholeAndFit) {
  const std::pair<std::string, std::optional<std::int64_t>> cases[] = {
      {"42", 42},
      {"-1", -1},
      {"9223372036854775807", 9'223'372'036'854'775'807},
      {"9223372036854775808", std::nullopt},
      {"42.5", std::nullopt},
      {"\"42\"", std::nullopt},
  };
  for (const auto& [number, expected] : cases) {
    EXPECT_EQ(numberMember(*jsonObject("{\"n\":" + number + "}"), "n"), expected) << number;
  }
  EXPECT_EQ(numberMember(*jsonObject("{}"), "n"), std::nullopt);
}

TEST(ClaudeFiles, TimesNeedDateTimeAndZone) {
  const std::pair<std::string, std::optional<double>> cases[] = {
      {"2025-11-21T05:44:12Z", 1'763'703'852},
      {"2025-11-21T05:44:12.25Z", 1'763'703'852.25},
      {"2025-11-21T05:44:12,5+00:00", 1'763'703'852.5},
      {"2025-11-21T05:44:12.500000000000000000000000Z", 1'763'703'852.5},
      {"2025-11-21T07:44:12+02:00", 1'763'703'852},
      {"2025-11-21T02:14:12-0330", 1'763'703'852},
      {"0001-01-01T00:00:00Z", -62'135'596'800},
      {"9999-12-31T23:59:59Z", 253'402'300'799},
      {"2025-11-21T07:44:12+02", 1'763'703'852},
      {"2025-11-21T05:44:12.Z", std::nullopt},
      {"2025-02-29T00:00:00Z", std::nullopt},
      {"2025-11-21T05:44:12", std::nullopt},
      {"2025-11-21T05:44:12+99:99", std::nullopt},
      {"2025-11-21T05:44:12Z and more", std::nullopt},
      {"2025-11-21 05:44:12Z", std::nullopt},
      {"999999999999-11-21T05:44:12Z", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [text, expected] : cases) {
    const auto moment = isoTime(text);
    ASSERT_EQ(moment.has_value(), expected.has_value()) << text;
    EXPECT_NEAR(seconds(moment.value_or(Timestamp{})), expected.value_or(0), 1e-6) << text;
  }
}

}  // namespace
}  // namespace tarnwick
