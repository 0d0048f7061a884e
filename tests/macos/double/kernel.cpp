#include "tests/macos/double/kernel.h"

#include <dlfcn.h>
#include <mach/mach.h>
#include <mach/mach_time.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/sysctl.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace tarnwick::darwin {
namespace {

Kernel* asked = nullptr;  // C functions take no object
int errorNumber = 0;

// Fails where the test wants it to.
bool refuses(const std::string& call) {
  if (asked->before) asked->before(call);
  const auto found = asked->refused.find(call);
  if (found != asked->refused.end()) errorNumber = found->second;
  return found != asked->refused.end();
}

int fails(int number, int answer) {
  errorNumber = number;
  return answer;
}

int answer(const std::string& call, std::size_t usual) {
  const auto found = asked->answers.find(call);
  return found == asked->answers.end() ? static_cast<int>(usual) : found->second;
}

KernelProcess* find(pid_t pid) {
  const auto found = asked->processes.find(pid);
  if (found == asked->processes.end()) errorNumber = ESRCH;
  return found == asked->processes.end() ? nullptr : &found->second;
}

std::uint64_t machTicks(std::uint64_t nanoseconds) {
  return nanoseconds * asked->timebase.second / asked->timebase.first;
}

// A record goes out whole or not at all.
template <class Record>
int handOut(const std::string& call, const Record& record, void* buffer, int room) {
  if (room < static_cast<int>(sizeof record)) return fails(ENOMEM, 0);
  std::memcpy(buffer, &record, sizeof record);
  return answer(call, sizeof record);
}

template <class Entry>
int handOutList(const std::string& call, const std::vector<Entry>& list, void* buffer, int room) {
  const std::size_t bytes =
      std::min(list.size(), static_cast<std::size_t>(room) / sizeof(Entry)) * sizeof(Entry);
  if (bytes > 0) std::memcpy(buffer, list.data(), bytes);
  return answer(call, bytes);
}

int handOutDescriptors(const KernelProcess& process, void* buffer, int room) {
  constexpr std::size_t spare = 20;  // for what opens until the next call
  if (buffer == nullptr)
    return answer("descriptors", (process.descriptors.size() + spare) * sizeof(proc_fdinfo));
  std::vector<proc_fdinfo> list;
  for (const OpenDescriptor& open : process.descriptors) list.push_back({open.number, open.type});
  return handOutList("descriptors", list, buffer, room);
}

// What fits of the value; more than there is room for is an error.
int handOutValue(const std::string& value, void* buffer, std::size_t* room) {
  const std::size_t bytes = std::min(value.size(), *room);
  std::memcpy(buffer, value.data(), bytes);
  *room = bytes;
  return bytes == value.size() ? 0 : fails(ENOMEM, -1);
}

}  // namespace

Kernel::Kernel() { asked = this; }
Kernel::~Kernel() { asked = nullptr; }

}  // namespace tarnwick::darwin

using namespace tarnwick::darwin;

extern "C" {

int* __error() { return &errorNumber; }

int proc_listpids(std::uint32_t type, std::uint32_t uid, void* buffer, int room) {
  if (refuses("pids")) return 0;
  std::vector<pid_t> pids;
  for (const auto& [pid, process] : asked->processes)
    if (type == PROC_UID_ONLY && process.uid == uid) pids.push_back(pid);
  std::ranges::reverse(pids);  // the youngest first
  return handOutList("pids", pids, buffer, room);
}

int proc_pidinfo(int pid, int flavor, std::uint64_t /*argument*/, void* buffer, int room) {
  const char* call = flavor == PROC_PIDTBSDINFO  ? "record"
                     : flavor == PROC_PIDLISTFDS ? "descriptors"
                                                 : "folder";
  if (refuses(call)) return 0;
  const KernelProcess* process = find(pid);
  if (process == nullptr) return 0;
  if (flavor == PROC_PIDLISTFDS) return handOutDescriptors(*process, buffer, room);
  if (flavor == PROC_PIDVNODEPATHINFO) {
    proc_vnodepathinfo folders{};
    process->folder.copy(folders.pvi_cdir.vip_path, sizeof folders.pvi_cdir.vip_path);
    return handOut(call, folders, buffer, room);
  }
  proc_bsdinfo record{};
  record.pbi_pid = static_cast<std::uint32_t>(pid);
  record.pbi_ppid = 1;
  record.pbi_uid = process->uid;
  record.pbi_ruid = 501;
  record.pbi_start_tvsec = process->started;
  return handOut(call, record, buffer, room);
}

int proc_pidfdinfo(int pid, int number, int flavor, void* buffer, int room) {
  if (refuses("socket")) return 0;
  const KernelProcess* process = find(pid);
  if (process == nullptr) return 0;
  const auto& all = process->descriptors;
  const auto open = std::ranges::find(all, number, &OpenDescriptor::number);
  if (open == all.end()) return fails(EBADF, 0);
  if (flavor != PROC_PIDFDSOCKETINFO || open->type != PROX_FDTYPE_SOCKET) return fails(ENOTSUP, 0);
  socket_fdinfo socket{};
  socket.psi.soi_kind = open->kind;
  socket.psi.soi_proto.pri_tcp.tcpsi_state = open->state;
  socket.psi.soi_proto.pri_tcp.tcpsi_ini.insi_lport = __builtin_bswap16(open->port);
  return handOut("socket", socket, buffer, room);
}

int proc_pid_rusage(int pid, int flavor, rusage_info_t* buffer) {
  if (refuses("usage")) return -1;
  const KernelProcess* process = find(pid);
  if (process == nullptr) return -1;
  if (flavor != RUSAGE_INFO_V4) return fails(EINVAL, -1);
  rusage_info_v4 usage{};
  usage.ri_user_time = machTicks(process->userNanoseconds);
  usage.ri_system_time = machTicks(process->systemNanoseconds);
  usage.ri_phys_footprint = process->footprint;
  usage.ri_lifetime_max_phys_footprint = 2 * process->footprint;
  usage.ri_resident_size = process->footprint / 2;
  std::memcpy(buffer, &usage, sizeof usage);
  return answer("usage", 0);
}

int proc_pidpath(int pid, void* buffer, std::uint32_t room) {
  if (refuses("path")) return 0;
  const KernelProcess* process = find(pid);
  if (process == nullptr) return 0;
  const std::string text = process->path + '\0';
  if (text.size() > room) return fails(ENOMEM, 0);
  std::memcpy(buffer, text.data(), text.size());
  return answer("path", text.size() - 1);
}

// KERN_PROCARGS2 alone. What does not fit is left out at the front: the count stays, the environment too.
int sysctl(int* name, u_int words, void* buffer, std::size_t* room, void* /*set*/, std::size_t /*bytes*/) {
  if (refuses("arguments")) return -1;
  if (words != 3 || name[0] != CTL_KERN || name[1] != KERN_PROCARGS2) return fails(ENOENT, -1);
  const KernelProcess* process = find(name[2]);
  if (process == nullptr) return fails(EINVAL, -1);
  if (*room <= sizeof process->argumentCount) return fails(EINVAL, -1);
  const std::string& strings = process->strings;
  const std::size_t bytes = std::min(strings.size(), *room - sizeof process->argumentCount);
  std::memcpy(buffer, &process->argumentCount, sizeof process->argumentCount);
  strings.copy(static_cast<char*>(buffer) + sizeof process->argumentCount, bytes, strings.size() - bytes);
  *room = bytes + sizeof process->argumentCount;
  return answer("arguments", 0);
}

int sysctlbyname(const char* name, void* buffer, std::size_t* room, void* /*set*/, std::size_t /*bytes*/) {
  if (refuses(name)) return -1;
  const auto value = asked->values.find(name);
  return value == asked->values.end() ? fails(ENOENT, -1) : handOutValue(value->second, buffer, room);
}

std::uint64_t mach_absolute_time() {
  return asked->translated ? asked->awakeNanoseconds : machTicks(asked->awakeNanoseconds);
}

__uint64_t clock_gettime_nsec_np(clockid_t clock) {
  return clock == CLOCK_UPTIME_RAW ? asked->awakeNanoseconds : 0;
}

mach_port_t mach_task_self_ = 7;

mach_port_t mach_host_self() {
  ++asked->rights;
  return 8;
}

kern_return_t mach_port_deallocate(ipc_space_t task, mach_port_name_t name) {
  if (task == mach_task_self_ && name == 8) --asked->rights;
  return KERN_SUCCESS;
}

kern_return_t host_statistics(host_t host, host_flavor_t flavor, host_info_t info,
                              mach_msg_type_number_t* count) {
  if (refuses("ticks")) return KERN_FAILURE;
  if (host != 8 || flavor != HOST_CPU_LOAD_INFO || *count < asked->ticks.size()) return KERN_INVALID_ARGUMENT;
  std::memcpy(info, asked->ticks.data(), sizeof asked->ticks);
  *count = HOST_CPU_LOAD_INFO_COUNT;
  return KERN_SUCCESS;
}

kern_return_t host_page_size(host_t host, vm_size_t* size) {
  *size = 16'384;
  return host == 8 ? KERN_SUCCESS : KERN_INVALID_ARGUMENT;
}

kern_return_t host_statistics64(host_t host, host_flavor_t flavor, host_info64_t info,
                                mach_msg_type_number_t* count) {
  if (refuses("pages")) return KERN_FAILURE;
  if (host != 8 || flavor != HOST_VM_INFO64 || *count < HOST_VM_INFO64_COUNT) return KERN_INVALID_ARGUMENT;
  std::memcpy(info, &asked->pages, sizeof asked->pages);
  *count = HOST_VM_INFO64_COUNT;
  return KERN_SUCCESS;
}

int statfs(const char* path, struct statfs* volume) {
  if (refuses("statfs")) return -1;
  if (std::string(path) != "/" || asked->volumes.empty()) return fails(ENOENT, -1);
  *volume = asked->volumes.front();
  return 0;
}

int getfsstat(struct statfs* volumes, int room, int flags) {
  if (refuses("volumes")) return -1;
  if (flags != MNT_NOWAIT) return fails(EINVAL, -1);
  const std::size_t there = asked->volumes.size();
  if (volumes == nullptr) return answer("volumes", there);
  handOutList("volumes", asked->volumes, volumes, room);
  return answer("volumes", std::min(there, static_cast<std::size_t>(room) / sizeof(struct statfs)));
}

int kill(pid_t pid, int number) {
  if (refuses("kill")) return -1;
  if (find(pid) == nullptr) return -1;
  asked->signals.emplace_back(pid, number);
  return 0;
}

ssize_t readlink(const char* path, char* buffer, std::size_t room) {
  const auto link = asked->links.find(path);
  return link == asked->links.end() ? fails(ENOENT, -1)
                                    : static_cast<ssize_t>(link->second.copy(buffer, room));
}

int _NSGetExecutablePath(char* buffer, std::uint32_t* room) {
  const auto needed = static_cast<std::uint32_t>(asked->executable.size() + 1);
  if (std::exchange(*room, needed) < needed) return -1;
  std::memcpy(buffer, asked->executable.c_str(), needed);
  return 0;
}

char* realpath(const char* path, char* /*buffer*/) {
  const auto link = asked->links.find(path);
  return refuses("realpath") ? nullptr : ::strdup(link == asked->links.end() ? path : link->second.c_str());
}

void* dlopen(const char* path, int /*mode*/) {
  const auto library = asked->libraries.find(path);
  return library == asked->libraries.end() ? nullptr : &library->second;
}

void* dlsym(void* library, const char* name) {
  const auto& names = *static_cast<std::map<std::string, void*>*>(library);
  return names.contains(name) ? names.at(name) : nullptr;
}

int execv(const char* path, char* const* /*words*/) {
  asked->programs.emplace_back(path);
  return fails(EACCES, -1);
}

}  // extern "C"
