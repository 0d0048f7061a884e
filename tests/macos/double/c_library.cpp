// What Darwin's C library has beyond that of Linux, as far as the tests and the test library need it: the
// classes of ASCII, which its inline functions look up, and the program's words.
#include <crt_externs.h>
#include <ctype.h>
#include <mach/mach.h>
#include <runetype.h>

#include <cstdint>

namespace {

constexpr _RuneLocale asciiClasses() {
  _RuneLocale classes{};
  for (int rune = 0; rune < 128; ++rune) {
    const bool lower = rune >= 'a' && rune <= 'z';
    const bool upper = rune >= 'A' && rune <= 'Z';
    const bool digit = rune >= '0' && rune <= '9';
    const bool space = rune == ' ' || (rune >= '\t' && rune <= '\r');
    const bool shown = rune >= ' ' && rune < 127;
    const bool hexadecimal = digit || (rune >= 'a' && rune <= 'f') || (rune >= 'A' && rune <= 'F');
    std::uint32_t type = 0;
    if (lower) type |= _CTYPE_A | _CTYPE_L;
    if (upper) type |= _CTYPE_A | _CTYPE_U;
    if (digit) type |= _CTYPE_D;
    if (space) type |= _CTYPE_S;
    if (shown) type |= _CTYPE_R;
    if (shown && rune != ' ') type |= _CTYPE_G;
    if (shown && rune != ' ' && !lower && !upper && !digit) type |= _CTYPE_P;
    if (!shown) type |= _CTYPE_C;
    if (hexadecimal) type |= _CTYPE_X;
    classes.__runetype[rune] = type;
  }
  return classes;
}

int programWordCount = 0;
char** programWords = nullptr;

}  // namespace

extern "C" {
constinit _RuneLocale _DefaultRuneLocale = asciiClasses();
int __maskrune(__darwin_ct_rune_t /*rune*/, unsigned long /*mask*/) { return 0; }  // nothing beyond ASCII
int* _NSGetArgc() { return &programWordCount; }
char*** _NSGetArgv() { return &programWords; }
kern_return_t task_threads(task_t /*task*/, thread_act_array_t* /*list*/, mach_msg_type_number_t* /*count*/) {
  return KERN_FAILURE;
}
kern_return_t vm_deallocate(vm_map_t /*map*/, vm_address_t /*address*/, vm_size_t /*size*/) {
  return KERN_FAILURE;
}
}
