// The table of the biggest users, and texts in the cells of a terminal.

#include "app/cli/top_table.h"

#include "app/cli/terminal_width.h"
#include "tests/support/machines.h"

namespace {

TEST(Cells, AreCountedAndCut) {
  const std::tuple<const char*, std::size_t, std::size_t, const char*> cases[] = {
      {"plain", 5, 5, "plain"},
      {"plain", 5, 4, "pla…"},
      {"plain", 5, 1, "…"},
      {"plain", 5, 0, ""},
      {"日本語", 6, 5, "日本…"},
      {"日本語", 6, 4, "日…"},                      // half a character has no place
      {"e\u0301e\u0301e\u0301", 3, 2, "e\u0301…"},  // marks stay with theirs
      {"🙂\u200D\uFE0Fx", 3, 3, "🙂\u200D\uFE0Fx"},
      {"\u00AD\u00ADa", 3, 3, "\u00AD\u00ADa"},  // terminals draw soft hyphens
      {"\u1112\u1161\u11ABｱＡ", 5, 4, "\u1112\u1161\u11ABｱ…"},
      {"\u1100\u115F\u1160", 4, 4, "\u1100\u115F\u1160"},  // both ends of a range, and what follows it
      {"\U0003FFFD\U0003FFFE", 3, 2, "…"}};
  for (const auto& [text, width, cells, cut] : cases) {
    EXPECT_EQ(cellWidth(text), width) << text;
    EXPECT_EQ(cutToCells(text, cells), cut) << text;
  }
}

struct TopTable : testing::Test {
  TopTable() {
    m.swapUsed = gigabyte;
    m.cpuBusy = 0.63;
    users = {
        .scarce = Scarce::memory,
        .rows = {{.kind = UserKind::job,
                  .what = "node server.mjs",
                  .bytes = 970 * megabyte,
                  .cpu = 1.25,
                  .count = 4,
                  .since = m.now - Seconds{46'800},
                  .who = "you",
                  .project = "storefront",
                  .branch = "fix/checkout-tax",
                  .stop = Action{"Stop it", {Signal{41, 15, m.now}}}},
                 {.kind = UserKind::application, .what = "写真\x1B", .bytes = 2 * gigabyte, .count = 12}},
        .bytesInUse = 5 * gigabyte,
        .cpuInUse = 6.3,
        .restBytes = -static_cast<std::int64_t>(megabyte),
        .restCpu = 5.05,
        .restCount = 99};
  }
  Snapshot m = machine();
  BiggestUsers users;
};

TEST_F(TopTable, HoldsEverythingInAPipe) {
  EXPECT_EQ(
      topTable(users, m, std::nullopt),
      "5.0 GB of 16.0 GB memory in use (1.0 GB of it moved to disk) · processor 63% busy · biggest users of memory first\n"
      "\n"
      "  MEMORY  CPU  PROCESSES  SINCE     STARTED BY  PROJECT                       WHAT             STOP IT WITH\n"
      "  970 MB  13%          4  13 hours  you         storefront, fix/checkout-tax  node server.mjs  kill -TERM 41\n"
      "  2.0 GB   0%         12                                                      写真\x1B\n"
      "   −1 MB  51%         99                                                      everything else\n");
  users.rows.clear();
  users.restBytes = 0;
  users.scarce = Scarce::processor;
  m.swapUsed = 0;
  EXPECT_EQ(topTable(users, m, std::nullopt),
            "5.0 GB of 16.0 GB memory in use · processor 63% busy · biggest users of the processor first\n"
            "\n"
            "  MEMORY  CPU  PROCESSES  WHAT\n"
            "    0 MB  51%         99  everything else\n");
}

TEST_F(TopTable, FitsATerminalOfAnyWidth) {
  const std::string row = "\n  970 MB  13%          4  13 hours  you         ";
  const std::pair<std::size_t, std::string> cases[] = {
      {108, row + "storefront, fix/checkout-tax  node server.mjs  kill -TERM 41\n"},
      {107, row + "storefront, fix/checkout-t…  node server.mjs  kill -TERM 41\n"},
      {92, row + "storefront,…  node server.mjs  kill -TERM 41\n"},
      {91, row + "node server.mjs  kill -TERM 41\n"},
      {77, "\n  970 MB  13%          4  13 hours  node server.mjs  kill -TERM 41\n"},
      {45, "\n  970 MB  13%  node server.mjs  kill -TERM 41\n"},
      {31, "\n  970 MB  13%  node server.mjs\n"},
      {20, "\n  970 MB  13%  node…\n  2.0 GB   0%  写真␛\n   −1 MB  51%  ever…\n"}};
  for (const auto& [columns, line] : cases)
    EXPECT_THAT(topTable(users, m, columns), HasSubstr(line)) << columns;
  for (std::size_t columns = 1; columns < 140; ++columns) {
    std::istringstream lines(topTable(users, m, columns));
    for (std::string line; std::getline(lines, line);) {
      EXPECT_TRUE(cellWidth(line) <= columns && line.find('\x1B') == std::string::npos) << line;
    }
  }
}

}  // namespace
