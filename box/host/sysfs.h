// Files under /sys and /proc that record what a gateway's software writes to its hardware.
//
// The files of /sys are named pipes that this process holds open. They keep every write, in order,
// even when several arrive before the box looks. Reading one would take what was written, so they
// are write-only. Those of /proc are plain files, which show what was written last.
#pragma once

#include <string>
#include <vector>

struct sysfs_file {
  std::string path;
  int watch;
  int pipe;          // -1: a plain file
  std::string rest;  // read from the pipe, not yet returned
};

struct sysfs_state {
  int notify;  // readable when something was written
  std::vector<sysfs_file> files;
};

struct sysfs_write {
  std::string path;
  std::string text;  // without its final newline
};

// To be called once, before the others. Reports what failed.
[[nodiscard]] bool sysfs_open(sysfs_state& state);

// These create the file; its directory must exist. They report what failed.
[[nodiscard]] bool sysfs_make_pipe(sysfs_state& state, const std::string& path);
[[nodiscard]] bool sysfs_make_plain(sysfs_state& state, const std::string& path,
                                    const std::string& text);

// All writes since the last call, oldest first. A write of several lines counts as several writes.
// Of writes to a plain file that come close together only the last may be returned.
std::vector<sysfs_write> sysfs_take(sysfs_state& state);
