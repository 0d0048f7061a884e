// Preloaded into a program, makes everything else thirteen hours old: its clocks run as if the machine had
// slept for so long.
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

extern "C" int clock_gettime(clockid_t clock, timespec* moment) noexcept {
  const long result = ::syscall(SYS_clock_gettime, clock, moment);
  if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_BOOTTIME)) moment->tv_sec += 13 * 3'600;
  return static_cast<int>(result);
}
