#include "host/overlay.h"

#include <sys/mount.h>
#include <cerrno>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>
#include <vector>

#include "base/files.h"
#include "base/report.h"

namespace fs = std::filesystem;

std::string overlay_upper(const overlay_layers& place, const std::string& path) {
  return place.layers + "/upper" + path;
}

// Outside the first user namespace an overlay has to keep its marks in user attributes.
static bool in_first_user_namespace() {
  return file_read("/proc/self/uid_map").find("4294967295") != std::string::npos;
}

// LOWER: the directory that the changes to PATH go on top of. On failure errno is the kernel's.
static bool mount_over(const overlay_layers& place, const std::string& lower,
                       const std::string& path) {
  std::string work = path, upper = overlay_upper(place, path), target = place.root + path;
  std::replace(work.begin(), work.end(), '/', '%');
  work = place.layers + "/work/" + work;
  if (!directory_make(upper) || !directory_make(work) || !directory_make(target)) return false;
  std::string options = "lowerdir=" + lower + ",upperdir=" + upper + ",workdir=" + work;
  if (!in_first_user_namespace()) options += ",userxattr";
  return mount("overlay", target.c_str(), "overlay", 0, options.c_str()) == 0;
}

static bool has_mount_below(const std::string& path) {
  std::istringstream mounts(file_read("/proc/self/mountinfo"));
  for (std::string line, id, parent, device, source, place; std::getline(mounts, line);) {
    std::istringstream(line) >> id >> parent >> device >> source >> place;
    if (place.starts_with(path + "/")) return true;
  }
  return false;
}

// Copies the files and links of FROM to TO and makes its directories there; returns their names.
static std::vector<std::string> copy_level(const std::string& from, const std::string& to) {
  std::vector<std::string> directories;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(from, error)) {
    std::string name = entry.path().filename();
    if (entry.is_directory(error) && !entry.is_symlink(error)) {
      directories.push_back(name);
      fs::create_directory(to + "/" + name, entry.path(), error);
    } else {
      fs::copy(entry.path(), to + "/" + name, fs::copy_options::copy_symlinks, error);
    }
  }
  return directories;
}

static bool mount_tree(const overlay_layers& place, const std::string& path);

// In a user namespace the kernel does not separate a directory from the mounts in it. Then the
// lower layer is a copy of this level, and each directory in it gets its own overlay.
static bool mount_level(const overlay_layers& place, const std::string& path) {
  std::string copy = place.layers + "/lower" + path;
  if (!directory_make(copy)) return false;
  std::vector<std::string> directories = copy_level(path, copy);
  if (!mount_over(place, copy, path)) return false;
  for (const std::string& name : directories)
    static_cast<void>(mount_tree(place, path + "/" + name));
  return true;
}

static bool mount_tree(const overlay_layers& place, const std::string& path) {
  if (mount_over(place, path, path)) return true;
  return errno == EINVAL && has_mount_below(path) && mount_level(place, path);
}

bool overlay_directory(const overlay_layers& place, const std::string& path) {
  if (mount_tree(place, path)) return true;
  return report_errno("an ordinary user needs Linux 5.11 or later for this; root needs overlayfs",
                      "mount an overlay over %s", path.c_str());
}
