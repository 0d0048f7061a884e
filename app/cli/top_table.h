// The biggest users as a table for people. Pure.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "diagnosis/biggest_users.h"
#include "records/snapshot.h"

namespace tarnwick {

// A line for the machine, one above the columns, one for each row and one for what they do not explain; in
// the last one that has room a text is cut with "…". A terminal too narrow for all columns shows fewer of
// them. `columns`: of the terminal; absent: the last column may be as long as it is.
std::string topTable(const BiggestUsers& users, const Snapshot& snapshot, std::optional<std::size_t> columns);

}  // namespace tarnwick
