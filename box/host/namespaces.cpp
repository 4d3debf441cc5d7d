#include "host/namespaces.h"

#include <fcntl.h>
#include <linux/capability.h>
#include <sched.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <cerrno>

#include <sstream>
#include <string>

#include "base/files.h"
#include "base/report.h"

struct capability_row {
  int number;
  const char* name;
};

// What root needs for mounts and namespaces, for interfaces, for an overlay over all files and to
// drop capabilities; and the portmapper for its account and its port.
static constexpr capability_row kNeeded[] = {
    {CAP_SYS_ADMIN, "CAP_SYS_ADMIN"},
    {CAP_NET_ADMIN, "CAP_NET_ADMIN"},
    {CAP_DAC_OVERRIDE, "CAP_DAC_OVERRIDE"},
    {CAP_SETPCAP, "CAP_SETPCAP"},
    {CAP_SETGID, "CAP_SETGID"},
    {CAP_SETUID, "CAP_SETUID"},
    {CAP_NET_BIND_SERVICE, "CAP_NET_BIND_SERVICE"},
};

static bool has_capability(int number) {
  __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] = {};
  if (syscall(SYS_capget, &header, data) < 0) return false;
  return data[CAP_TO_INDEX(number)].effective & CAP_TO_MASK(number);
}

// "CAP_SYS_ADMIN, CAP_NET_ADMIN", "" when all are there.
static std::string missing_capabilities() {
  std::string names;
  for (const capability_row& row : kNeeded) {
    if (!has_capability(row.number)) names += (names.empty() ? "" : ", ") + std::string(row.name);
  }
  return names;
}

bool namespaces_need_user() {
  return geteuid() != 0 || !missing_capabilities().empty();
}

static bool setting_is_zero(const std::string& path) {
  return file_read("/proc/sys/" + path) == "0\n";
}

// Keeps errno, which the message that asks for this is about.
bool namespaces_are_confined() {
  int error = errno;
  std::string value = file_read("/proc/sys/kernel/apparmor_restrict_unprivileged_userns");
  errno = error;
  return !value.empty() && value != "0\n";
}

// The kernel limit that is zero and so allows no namespace.
static std::string limit_hint() {
  for (const char* kind : {"user", "mnt", "net", "pid", "uts", "ipc"}) {
    std::string limit = std::string("max_") + kind + "_namespaces";
    if (setting_is_zero("user/" + limit)) return "the kernel setting user." + limit + " is 0";
  }
  return "too many namespaces exist already or lie inside each other; the kernel settings "
         "user.max_*_namespaces are the limits";
}

// Calls ACT for each line of the map, "INSIDE OUTSIDE COUNT".
template <typename Act>
static void for_each_range(Act act) {
  std::istringstream map(file_read("/proc/self/uid_map"));
  for (unsigned long inside, outside, count; map >> inside >> outside >> count;)
    act(inside, count);
}

static bool has_id(uid_t uid) {
  bool found = false;
  for_each_range([&](unsigned long inside, unsigned long count) {
    found = found || (uid >= inside && uid - inside < count);
  });
  return found;
}

bool namespaces_have_root_alone() {
  unsigned long ids = 0;
  for_each_range([&](unsigned long, unsigned long count) { ids += count; });
  return ids == 1;
}

// The root of the calling process is a mount point, unless it is that of a chroot.
static bool is_in_chroot() {
  std::istringstream mounts(file_read("/proc/self/mountinfo"));
  for (std::string line, id, parent, device, source, place; std::getline(mounts, line);) {
    std::istringstream(line) >> id >> parent >> device >> source >> place;
    if (place == "/") return false;
  }
  return true;
}

static std::string user_namespace_hint(int error) {
  if (error == ENOSPC || error == EUSERS) return limit_hint();
  if (error != EPERM) return "the kernel has no user namespaces";
  if (setting_is_zero("kernel/unprivileged_userns_clone")) {
    return "the kernel setting kernel.unprivileged_userns_clone is 0";
  }
  if (!has_id(geteuid())) return "this user has no id in the one around it";
  if (is_in_chroot()) return "in a chroot the kernel gives none";
  return "a seccomp filter or security policy, such as a container's, forbids one";
}

// Why a user namespace is needed, and why there is none.
static std::string clone_hint(bool user, int error) {
  if (!user) return error == ENOSPC ? limit_hint() : "";
  std::string lacking = geteuid() == 0 ? missing_capabilities() : "root";
  return "without " + lacking + " this takes a user namespace: " + user_namespace_hint(error);
}

// clone(2) rather than unshare(2): this process stays outside, and a process that already has
// threads, as with ThreadSanitizer, can still get a new user namespace.
pid_t namespaces_clone(bool user) {
  unsigned long flags =
      CLONE_NEWNS | CLONE_NEWNET | CLONE_NEWPID | CLONE_NEWUTS | CLONE_NEWIPC | SIGCHLD;
  if (user) flags |= CLONE_NEWUSER;
  pid_t pid = static_cast<pid_t>(syscall(SYS_clone, flags, nullptr, nullptr, nullptr, nullptr));
  if (pid >= 0) return pid;
  int error = errno;
  std::string hint = clone_hint(user, error);
  errno = error;
  report_errno(hint.empty() ? nullptr : hint.c_str(), "make the namespaces of a box");
  return pid;
}

static bool write_map(const char* name, const std::string& text) {
  std::string path = std::string("/proc/self/") + name;
  int fd = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  bool written = fd >= 0 && write(fd, text.data(), text.size()) > 0;
  int error = errno;
  if (fd >= 0) close(fd);
  errno = error;
  return written;
}

// To map the outer root, whoever created the namespace needs CAP_SETFCAP.
bool namespaces_map_root(uid_t uid, gid_t gid) {
  if (write_map("setgroups", "deny") && write_map("uid_map", "0 " + std::to_string(uid) + " 1\n") &&
      write_map("gid_map", "0 " + std::to_string(gid) + " 1\n")) {
    return true;
  }
  const char* hint = uid == 0 && errno == EPERM ? "for root this takes CAP_SETFCAP" : nullptr;
  return report_errno(hint, "become root in the user namespace of a box");
}
