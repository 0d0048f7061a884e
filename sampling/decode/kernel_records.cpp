#include "sampling/decode/kernel_records.h"

#include "records/utf8.h"

namespace tarnwick {

std::string textInField(std::string_view field) { return repairUtf8(field.substr(0, field.find('\0'))); }

}  // namespace tarnwick
