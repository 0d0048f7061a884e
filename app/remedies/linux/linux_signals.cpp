#include "app/remedies/linux/linux_signals.h"

#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "sampling/decode/proc_stat.h"
#include "system/posix/descriptor.h"

namespace tarnwick {
namespace {

constexpr std::size_t statBytes = 4096;  // a stat line is a tenth of that

SignalOutcome refused() { return {SignalOutcome::Kind::refused, {}}; }

// To be called right after the system call that sent the signal.
SignalOutcome outcomeOf(long result) {
  if (result == 0) return {SignalOutcome::Kind::sent, {}};
  return {SignalOutcome::Kind::failed, std::generic_category().message(errno)};
}

// A kernel without the call says the first, a sandbox that forbids it mostly the second.
bool handlesAreMissing(int error) { return error == ENOSYS || error == EPERM; }

// No such process, or the pid is that of a mere thread.
bool isNoProcess(int error) { return error == ESRCH || error == EINVAL || error == ENOENT; }

}  // namespace

LinuxSignals::LinuxSignals(std::uint32_t uid, const ProcClock& clock, Road road)
    : uid_(uid), clock_(clock), road_(road), reader_("/proc") {}

SignalOutcome LinuxSignals::send(const Signal& signal) const {
  if (signal.pid < firstOrdinaryPid) return refused();
  if (road_ == Road::pidOnly) return sendByPid(signal);
  const Descriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, signal.pid, 0)));
  if (handle.isOpen()) return sendThroughHandle(handle.number(), signal);
  const int error = errno;
  if (handlesAreMissing(error)) return sendByPid(signal);
  if (isNoProcess(error)) return refused();
  return {SignalOutcome::Kind::failed, std::generic_category().message(error)};
}

// Should the pid pass on between the handle and the look, the look sees a younger process, which does not
// have the start time; should it pass on after the look, the signal finds the handle's process ended.
SignalOutcome LinuxSignals::sendThroughHandle(int handle, const Signal& signal) const {
  if (!isTheOne(signal)) return refused();
  return outcomeOf(::syscall(SYS_pidfd_send_signal, handle, signal.number, nullptr, 0));
}

SignalOutcome LinuxSignals::sendByPid(const Signal& signal) const {
  if (!isTheOne(signal)) return refused();
  return outcomeOf(::kill(signal.pid, signal.number));
}

bool LinuxSignals::isTheOne(const Signal& signal) const {
  const std::optional<Timestamp> found = started(signal.pid);
  return found && *found == signal.started;
}

std::optional<Timestamp> LinuxSignals::started(Pid pid) const {
  if (!reader_.belongsTo(pid, uid_)) return std::nullopt;
  std::array<char, statBytes> buffer{};
  const std::optional<std::string_view> text = reader_.read(pid, "stat", buffer);
  const std::optional<ProcStat> stat = text ? procStat(*text) : std::nullopt;
  if (!stat || stat->zombie()) return std::nullopt;
  const std::optional<std::int64_t> start = startSeconds(stat->startTicks, clock_);
  if (!start) return std::nullopt;
  return timestamp(static_cast<double>(*start));
}

}  // namespace tarnwick
