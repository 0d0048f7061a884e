#include "sampling/macos/kernel_questions.h"

#include <libproc.h>

#include <limits>

#include "sampling/decode/kernel_records.h"
#include "sampling/decode/listeners.h"

namespace tarnwick {
namespace {

static_assert(sizeof(proc_fdinfo) == 8);
static_assert(sizeof(socket_fdinfo) == 792);
static_assert(TSI_S_LISTEN == 1);

// Between the question for the size and the list itself the process may open more than the kernel has spare
// room for: a list that fills its room is asked for anew, but not for ever.
std::vector<proc_fdinfo> openDescriptors(Pid pid) {
  constexpr int attempts = 3;
  std::vector<proc_fdinfo> descriptors;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    const int wanted = ::proc_pidinfo(pid, PROC_PIDLISTFDS, 0, nullptr, 0);
    const std::size_t room =
        wholeRecords(wanted, sizeof(proc_fdinfo), std::numeric_limits<std::size_t>::max());
    if (room == 0) return {};
    descriptors.resize(room);
    const int answered = ::proc_pidinfo(pid, PROC_PIDLISTFDS, 0, descriptors.data(),
                                        static_cast<int>(room * sizeof(proc_fdinfo)));
    descriptors.resize(wholeRecords(answered, sizeof(proc_fdinfo), room));
    if (descriptors.size() < room) break;
  }
  return descriptors;
}

std::optional<std::uint16_t> listeningPort(Pid pid, std::int32_t descriptor) {
  socket_fdinfo socket{};
  const int answered = ::proc_pidfdinfo(pid, descriptor, PROC_PIDFDSOCKETINFO, &socket, sizeof socket);
  if (!isWholeRecord(answered, sizeof socket) || socket.psi.soi_kind != SOCKINFO_TCP) return std::nullopt;
  const tcp_sockinfo& tcp = socket.psi.soi_proto.pri_tcp;
  if (tcp.tcpsi_state != TSI_S_LISTEN) return std::nullopt;
  return portInNetworkOrder(tcp.tcpsi_ini.insi_lport);
}

}  // namespace

std::optional<proc_bsdinfo> processRecord(Pid pid) {
  static_assert(sizeof(proc_bsdinfo) == 136);
  proc_bsdinfo record{};
  const int answered = ::proc_pidinfo(pid, PROC_PIDTBSDINFO, 0, &record, sizeof record);
  if (!isWholeRecord(answered, sizeof record)) return std::nullopt;
  return record;
}

std::vector<std::uint16_t> listeningPorts(Pid pid) {
  std::vector<std::uint16_t> ports;
  for (const proc_fdinfo& descriptor : openDescriptors(pid)) {
    if (descriptor.proc_fdtype != PROX_FDTYPE_SOCKET) continue;
    if (const auto port = listeningPort(pid, descriptor.proc_fd)) ports.push_back(*port);
  }
  return eachPortOnce(std::move(ports));
}

}  // namespace tarnwick
