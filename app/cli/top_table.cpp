#include "app/cli/top_table.h"

#include <algorithm>
#include <array>
#include <vector>

#include "app/cli/terminal_text.h"
#include "app/cli/terminal_width.h"
#include "diagnosis/machine_share.h"
#include "records/formatted.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

enum Place { memory, processor, processes, since, who, project, what, stopWith, placeCount };

using Cells = std::array<std::string, placeCount>;

constexpr std::size_t gap = 2;  // cells between two columns

struct Column {
  std::string_view head;
  bool rightAligned;
  std::size_t narrowest;  // cells to which it may shrink; 0: it never does
};

constexpr std::array<Column, placeCount> columnsOfTable{{{"MEMORY", true, 0},
                                                         {"CPU", true, 0},
                                                         {"PROCESSES", true, 0},
                                                         {"SINCE", false, 0},
                                                         {"STARTED BY", false, 10},
                                                         {"PROJECT", false, 12},
                                                         {"WHAT", false, 16},
                                                         {"STOP IT WITH", false, 13}}};

// Who goes first where there is no room.
constexpr std::array<Place, 5> dispensable{project, who, since, processes, stopWith};

std::string signedSize(std::int64_t bytes) {
  return bytes < 0 ? "−" + size(static_cast<std::uint64_t>(-bytes)) : size(static_cast<std::uint64_t>(bytes));
}

std::string percent(double cpu, const Snapshot& snapshot) {
  return wholePercent(processorShare(cpu, snapshot)) + "%";
}

Cells cellsOf(const BiggestUser& user, const Snapshot& snapshot) {
  Cells cells;
  cells[memory] = size(user.bytes);
  cells[processor] = percent(user.cpu, snapshot);
  cells[processes] = std::to_string(user.count);
  if (user.since) cells[since] = ago(std::max(secondsBetween(*user.since, snapshot.now), 0.0));
  cells[who] = user.who.value_or("");
  cells[project] = user.project.value_or("");
  if (user.branch) cells[project].append(", ").append(*user.branch);
  cells[what] = user.what;
  if (user.stop) cells[stopWith] = user.stop->fix.command();
  return cells;
}

Cells restCells(const BiggestUsers& users, const Snapshot& snapshot) {
  Cells cells;
  cells[memory] = signedSize(users.restBytes);
  cells[processor] = percent(users.restCpu, snapshot);
  cells[processes] = std::to_string(users.restCount);
  cells[what] = "everything else";
  return cells;
}

// The cells of each column; 0 for one that is not shown.
using Widths = std::array<std::size_t, placeCount>;

Widths naturalWidths(const std::vector<Cells>& rows) {
  Widths widths{};
  for (std::size_t i = 0; i < placeCount; ++i) {
    for (const Cells& row : rows) widths[i] = std::max(widths[i], cellWidth(row[i]));
    if (widths[i] > 0) widths[i] = std::max(widths[i], columnsOfTable[i].head.size());
  }
  return widths;
}

std::size_t lineWidth(const Widths& widths) {
  std::size_t all = 0;
  for (const std::size_t width : widths) all += width == 0 ? 0 : width + gap;
  return all;  // each column has its distance before it
}

// Takes cells from the widest columns that can spare some, and columns where that is not enough.
void fit(std::size_t columns, Widths& widths) {
  for (const Place dropped : dispensable) {
    for (std::size_t over = lineWidth(widths); over > columns; --over) {
      std::size_t widest = placeCount;
      for (std::size_t i = 0; i < placeCount; ++i) {
        const bool spares = columnsOfTable[i].narrowest > 0 && widths[i] > columnsOfTable[i].narrowest;
        if (spares && (widest == placeCount || widths[i] > widths[widest])) widest = i;
      }
      if (widest == placeCount) break;
      --widths[widest];
    }
    if (lineWidth(widths) <= columns) return;
    widths[dropped] = 0;
  }
}

std::string lineOf(const Cells& cells, const Widths& widths) {
  std::string line;
  for (std::size_t i = 0; i < placeCount; ++i) {
    if (widths[i] == 0) continue;
    const std::string text = cutToCells(cells[i], widths[i]);
    const std::string blanks(widths[i] - cellWidth(text), ' ');
    line.append(gap, ' ');
    line.append(columnsOfTable[i].rightAligned ? blanks + text : text + blanks);
  }
  line.resize(line.find_last_not_of(' ') + 1);
  return line;
}

std::string headline(const BiggestUsers& users, const Snapshot& snapshot) {
  const std::string moved =
      snapshot.swapUsed > 0 ? formatted(" ({} of it moved to disk)", size(snapshot.swapUsed)) : "";
  return formatted("{} of {} memory in use{} · processor {} busy · biggest users of {} first",
                   size(users.bytesInUse), size(snapshot.ram), moved, percent(users.cpuInUse, snapshot),
                   users.scarce == Scarce::memory ? "memory" : "the processor");
}

}  // namespace

std::string topTable(const BiggestUsers& users, const Snapshot& snapshot,
                     std::optional<std::size_t> columns) {
  std::vector<Cells> rows;
  for (const BiggestUser& user : users.rows) rows.push_back(cellsOf(user, snapshot));
  rows.push_back(restCells(users, snapshot));
  if (columns) {
    for (Cells& row : rows)
      for (std::string& cell : row) cell = harmlessInLine(cell);
  }
  Widths widths = naturalWidths(rows);
  if (columns) fit(*columns, widths);
  Cells heads;
  for (std::size_t i = 0; i < placeCount; ++i) heads[i] = columnsOfTable[i].head;
  rows.insert(rows.begin(), std::move(heads));

  const auto finished = [&](const std::string& line) {
    return (columns ? cutToCells(line, *columns) : line) + "\n";
  };
  std::string text = finished(headline(users, snapshot)) + "\n";
  for (const Cells& row : rows) text += finished(lineOf(row, widths));
  return text;
}

}  // namespace tarnwick
