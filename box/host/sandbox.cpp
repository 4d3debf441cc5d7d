#include "host/sandbox.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include <string_view>
#include <vector>

#include "base/files.h"
#include "base/report.h"
#include "host/firmware.h"
#include "host/namespaces.h"
#include "host/overlay.h"

// The new root is built here. Every system has /tmp, and the host's files in it are not seen inside
// anyway, except for the trees that are held open before it is covered.
static const std::string kRoot = "/tmp";
static const std::string kLayers = kRoot + "/.layers";

static constexpr unsigned long kPlain = MS_NOSUID | MS_NODEV;

// A host directory that must be visible inside under its own path.
struct held_tree {
  std::string path;
  int fd;  // O_PATH, opened before anything covers it; -1: nothing to hold
};

// In a user namespace nobody may uncover the parts of /proc and /sys that a container covers.
static const char* mount_hint(std::string_view type = "") {
  if (errno == EPERM || errno == EACCES) {
    if (namespaces_are_confined()) {
      return "the kernel setting kernel.apparmor_restrict_unprivileged_userns is not 0";
    }
    if (type == "proc" || type == "sysfs") {
      return "where a container covers parts of it this takes root with CAP_SYS_ADMIN";
    }
    return "a security policy forbids mounts here, or they take root with CAP_SYS_ADMIN";
  }
  if (errno == ENODEV) return "this kernel lacks that file system";
  return nullptr;
}

static bool mount_at(const char* type, const std::string& target, unsigned long flags,
                     const std::string& options = "") {
  if (!directory_make(target)) return false;
  if (mount(type, target.c_str(), type, flags, options.c_str()) == 0) return true;
  std::string shown = target == kRoot ? "/" : target.substr(kRoot.size());
  return report_errno(mount_hint(type), "mount %s on %s of the box", type, shown.c_str());
}

// Always includes what is mounted below: in a user namespace those mounts cannot be left out.
static bool bind_at(const std::string& source, const std::string& target) {
  if (mount(source.c_str(), target.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0) return true;
  return report_errno(mount_hint(), "bind %s into the box", source.c_str());
}

// The flags that a new mount over the same files must keep: a user namespace may not drop them.
static unsigned long flags_of(const std::string& path) {
  struct statvfs seen;
  unsigned long flags = 0;
  if (statvfs(path.c_str(), &seen) < 0) return 0;
  if (seen.f_flag & ST_NOSUID) flags |= MS_NOSUID;
  if (seen.f_flag & ST_NODEV) flags |= MS_NODEV;
  if (seen.f_flag & ST_NOEXEC) flags |= MS_NOEXEC;
  if (seen.f_flag & ST_NOATIME) flags |= MS_NOATIME;
  if (seen.f_flag & ST_NODIRATIME) flags |= MS_NODIRATIME;
  if (seen.f_flag & ST_RELATIME) flags |= MS_RELATIME;
  return flags;
}

// Includes everything mounted below. Kernels before 5.12 change only the mount at PATH.
static bool make_readonly(const std::string& path) {
  mount_attr attributes = {};
  attributes.attr_set = MOUNT_ATTR_RDONLY;
  if (syscall(SYS_mount_setattr, AT_FDCWD, path.c_str(), AT_RECURSIVE, &attributes,
              sizeof attributes) == 0) {
    return true;
  }
  return mount(nullptr, path.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY | flags_of(path),
               nullptr) == 0;
}

// The directory nearest to PATH, itself included, that is the top of a working copy; else PATH.
static std::string source_tree(const std::string& path) {
  for (std::string dir = path; dir != "/"; dir = path_parent(dir)) {
    if (access((dir + "/.git").c_str(), F_OK) == 0) return dir;
  }
  return path;
}

static bool is_below(const std::string& path, const std::string& top) {
  return path == top || path.starts_with(top + "/");
}

// Directories of the system are seen through the overlays, and those of the kernel are new in a
// box, so neither are held.
static held_tree hold(const std::string& path) {
  for (std::string_view system : {"/", "/tmp", "/run", "/var", "/etc", "/usr", "/var/tmp",
                                  "/usr/bin", "/usr/sbin", "/usr/local/bin", "/usr/local/sbin"}) {
    if (path == system) return {path, -1};
  }
  for (const char* kernel : {"/dev", "/proc", "/sys"}) {
    if (is_below(path, kernel)) return {path, -1};
  }
  return {path, open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
}

// Needed even where the same directory is visible already, since there it is read-only.
static bool show_held(const held_tree& tree) {
  std::string target = kRoot + tree.path;
  if (tree.fd < 0) return true;
  return directory_make(target) && bind_at("/proc/self/fd/" + std::to_string(tree.fd), target);
}

// The portmapper drops its privileges for this account. Where root is the only user, the account
// becomes another name for root.
static std::string passwd_with_rpc_as_root(const std::string& passwd) {
  std::string text;
  for (size_t at = 0, end; at < passwd.size(); at = end + 1) {
    end = passwd.find('\n', at);
    if (end == std::string::npos) end = passwd.size();
    std::string line = passwd.substr(at, end - at);
    if (line.starts_with("_rpc:")) line = "_rpc:x:0:0::/run/rpcbind:/usr/sbin/nologin";
    text += line + "\n";
  }
  return text;
}

static bool fill_etc(const std::string& upper) {
  std::string name = kSandboxHostName;
  if (!directory_make(upper + "/Wireless") || !file_write(upper + "/hostname", name + "\n") ||
      !file_write(upper + "/hosts", file_read("/etc/hosts") + "192.168.254.254\t" + name + "\n")) {
    return false;
  }
  if (!namespaces_have_root_alone()) return true;
  return file_write(upper + "/passwd", passwd_with_rpc_as_root(file_read("/etc/passwd")));
}

static bool fill_usr(const sandbox_plan& plan, const std::string& upper) {
  if (!firmware_fill_usr(upper, plan.program_dir + "/gwbox-companion")) return false;
  std::string link = upper + std::string(kSandboxPortmap).substr(strlen("/usr"));
  if (!directory_make(path_parent(link))) return false;
  if (symlink("rpcbind", link.c_str()) == 0) return true;
  return report_errno(nullptr, "make the link portmap");
}

static bool fill_var(const std::string& upper) {
  if (symlink("/run", (upper + "/run").c_str()) == 0) return true;
  return report_errno(nullptr, "make the link /var/run");
}

// The layers are filled before they are mounted, since they are not visible afterwards.
static bool overlay_system(const sandbox_plan& plan) {
  overlay_layers place = {kRoot, kLayers};
  std::string usr = overlay_upper(place, "/usr"), etc = overlay_upper(place, "/etc"),
              var = overlay_upper(place, "/var");
  if (!mount_at("tmpfs", kLayers, kPlain, "mode=0755") || !directory_make(usr) ||
      !directory_make(etc) || !directory_make(var)) {
    return false;
  }
  if (!fill_usr(plan, usr) || !fill_etc(etc) || !fill_var(var)) return false;
  for (const char* path : {"/usr", "/etc", "/var"}) {
    if (!overlay_directory(place, path)) return false;
  }
  if (umount2(kLayers.c_str(), MNT_DETACH) < 0) return report_errno(nullptr, "hide the layers");
  rmdir(kLayers.c_str());
  return true;
}

static bool is_made_anew(std::string_view name) {
  for (std::string_view made : {".", "..", "usr", "etc", "var", "proc", "sys", "dev", "tmp", "run",
                                "nvram", "scripts", "boot", "lost+found"}) {
    if (name == made) return true;
  }
  return false;
}

// A directory that cannot be made read-only is left out.
static bool show_directory(const std::string& source, const std::string& target) {
  if (mount(source.c_str(), target.c_str(), nullptr, MS_BIND | MS_REC, nullptr) < 0) return false;
  if (make_readonly(target)) return true;
  umount2(target.c_str(), MNT_DETACH);
  return false;
}

// Links such as /bin are copied, directories such as /home shown as they are, but read-only. A
// directory that cannot be shown is left out: the two that matter are held and bound separately.
static void show_entry(const std::string& name) {
  std::string source = "/" + name, target = kRoot + "/" + name;
  char link[256] = "";
  struct stat entry;
  if (lstat(source.c_str(), &entry) < 0) return;
  if (S_ISLNK(entry.st_mode) && readlink(source.c_str(), link, sizeof link - 1) > 0) {
    static_cast<void>(!symlink(link, target.c_str()));
  } else if (S_ISDIR(entry.st_mode) && mkdir(target.c_str(), 0755) == 0 &&
             !show_directory(source, target)) {
    rmdir(target.c_str());
  }
}

static bool show_host() {
  DIR* top = opendir("/");
  if (!top) return report_errno(nullptr, "list /");
  while (struct dirent* entry = readdir(top)) {
    if (!is_made_anew(entry->d_name)) show_entry(entry->d_name);
  }
  closedir(top);
  return true;
}

struct device_row {
  const char* name;
  unsigned major_number, minor_number;
};

static constexpr device_row kDevices[] = {
    {"null", 1, 3},   {"zero", 1, 5},    {"full", 1, 7},
    {"random", 1, 8}, {"urandom", 1, 9}, {"tty", 5, 0},
};

// The box's own device node, or the host's in a user namespace, where none can be made.
static bool make_device(const device_row& row) {
  std::string source = std::string("/dev/") + row.name, target = kRoot + source;
  dev_t number = makedev(row.major_number, row.minor_number);
  if (mknod(target.c_str(), S_IFCHR | 0666, number) == 0) {
    return chmod(target.c_str(), 0666) == 0 || report_errno(nullptr, "make %s", source.c_str());
  }
  return file_write(target, "") && bind_at(source, target);
}

static bool link_devices() {
  static constexpr const char* kLinks[][2] = {{"/proc/self/fd", "fd"},
                                              {"/proc/self/fd/0", "stdin"},
                                              {"/proc/self/fd/1", "stdout"},
                                              {"/proc/self/fd/2", "stderr"},
                                              {"pts/ptmx", "ptmx"}};
  for (const auto& [to, name] : kLinks) {
    std::string link = kRoot + "/dev/" + name;
    if (symlink(to, link.c_str()) < 0) return report_errno(nullptr, "make the link /dev/%s", name);
  }
  return true;
}

static bool mount_devices() {
  if (!mount_at("tmpfs", kRoot + "/dev", MS_NOSUID, "mode=0755")) return false;
  for (const device_row& row : kDevices) {
    if (!make_device(row)) return false;
  }
  return link_devices() &&
         mount_at("devpts", kRoot + "/dev/pts", MS_NOSUID | MS_NOEXEC,
                  "newinstance,ptmxmode=0666,mode=0620") &&
         mount_at("tmpfs", kRoot + "/dev/shm", kPlain, "mode=1777");
}

// Makes the files of the whole kernel read-only. Those of the network are the box's own.
static bool protect_proc() {
  for (const char* name : {"sys", "sysrq-trigger", "irq", "bus", "fs", "acpi", "scsi", "mtrr"}) {
    std::string path = kRoot + "/proc/" + name;
    if (access(path.c_str(), F_OK) < 0) continue;
    if (!bind_at(path, path)) return false;
    if (!make_readonly(path)) return report_errno(nullptr, "make /proc/%s read-only", name);
  }
  std::string network = kRoot + "/proc/sys/net";
  if (access(network.c_str(), F_OK) < 0) return true;
  if (!bind_at(network, network)) return false;
  return mount(nullptr, network.c_str(), nullptr, MS_REMOUNT | MS_BIND | flags_of(network),
               nullptr) == 0 ||
         report_errno(nullptr, "make /proc/sys/net writable");
}

static bool mount_kernel_views() {
  constexpr unsigned long kFlags = MS_NOSUID | MS_NODEV | MS_NOEXEC;
  if (!mount_devices() || !mount_at("proc", kRoot + "/proc", kFlags)) return false;
  return protect_proc() && mount_at("sysfs", kRoot + "/sys", kFlags | MS_RDONLY);
}

static bool mount_empty_dirs() {
  return mount_at("tmpfs", kRoot + "/tmp", kPlain, "mode=1777") &&
         mount_at("tmpfs", kRoot + "/run", kPlain, "mode=0755") &&
         mount_at("tmpfs", kRoot + "/nvram", kPlain, "mode=0755") &&
         mount_at("tmpfs", kRoot + "/etc/Wireless", kPlain, "mode=0755") &&
         directory_make(kRoot + kSandboxRunDir);
}

// A kernel without a PCI bus has no such file; then all of /proc/bus is replaced.
static bool show_pci_devices(const std::string& text) {
  std::string devices = kRoot + "/proc/bus/pci/devices";
  if (access(devices.c_str(), F_OK) < 0) {
    return mount_at("tmpfs", kRoot + "/proc/bus", kPlain, "mode=0755") &&
           directory_make(path_parent(devices)) && file_write(devices, text);
  }
  std::string source = kRoot + kSandboxRunDir + "/pci_devices";
  return file_write(source, text) && bind_at(source, devices);
}

static bool change_root(const std::string& work_dir) {
  if (chdir(kRoot.c_str()) < 0 || syscall(SYS_pivot_root, ".", ".") < 0 ||
      umount2(".", MNT_DETACH) < 0) {
    return report_errno(mount_hint(), "change to the root of the box");
  }
  if (chdir(work_dir.c_str()) == 0 || chdir("/") == 0) return true;
  return report_errno(nullptr, "enter / of the box");
}

// Nothing in a box needs these capabilities: the model answers when a module is loaded.
static bool drop_capabilities() {
  for (int capability : {CAP_SYS_RAWIO, CAP_SYS_TIME, CAP_SYS_BOOT, CAP_SYS_MODULE}) {
    if (prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) < 0) {
      return report_errno(nullptr, "give up a capability");
    }
  }
  return true;
}

static bool make_private(const char* mount_point) {
  return mount(nullptr, mount_point, nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// The root of a chroot is usually not a mount point, but the box needs one. /proc is one, and
// nobody outside sees what is mounted over it once it is private.
static bool make_root_mount_point() {
  return make_private("/proc") && mount("/", "/proc", nullptr, MS_BIND | MS_REC, nullptr) == 0 &&
         chroot("/proc") == 0;
}

static bool separate_mounts() {
  if (make_private("/")) return true;
  if (errno == EINVAL && make_root_mount_point() && make_private("/")) return true;
  return report_errno(mount_hint(), "separate the mounts of the box from the host's");
}

bool sandbox_enter(const sandbox_plan& plan) {
  if (!separate_mounts()) return false;
  held_tree trees[] = {hold(source_tree(plan.work_dir)), hold(plan.program_dir)};
  if (!mount_at("tmpfs", kRoot, kPlain, "mode=0755") || !overlay_system(plan) || !show_host() ||
      !mount_kernel_views() || !mount_empty_dirs() || !show_pci_devices(plan.pci_devices)) {
    return false;
  }
  for (const held_tree& tree : trees) {
    bool shown = show_held(tree);
    if (tree.fd >= 0) close(tree.fd);
    if (!shown) return false;
  }
  if (sethostname(kSandboxHostName, strlen(kSandboxHostName)) < 0) {
    return report_errno(nullptr, "set the host name");
  }
  return drop_capabilities() && change_root(plan.work_dir);
}
