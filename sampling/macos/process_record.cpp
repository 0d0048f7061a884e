#include "sampling/macos/process_record.h"

#include <libproc.h>

#include "sampling/decode/kernel_records.h"

namespace tarnwick {

std::optional<proc_bsdinfo> processRecord(Pid pid) {
  static_assert(sizeof(proc_bsdinfo) == 136);
  proc_bsdinfo record{};
  const int answered = ::proc_pidinfo(pid, PROC_PIDTBSDINFO, 0, &record, sizeof record);
  if (!isWholeRecord(answered, sizeof record)) return std::nullopt;
  return record;
}

}  // namespace tarnwick
