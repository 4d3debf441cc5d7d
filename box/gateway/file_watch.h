// The files through which the daemon, the driver and other processes of a box work together: the
// profiles and their mirrors, markers in /tmp, everything in /nvram, and what companions record.
//
// The kernel tells that a file has changed, but not who did it. Whoever is about to change one is
// noted by the trapped calls, so file_watch_touch comes first.
#pragma once

#include <map>
#include <set>
#include <string>

#include "base/journal.h"
#include "gateway/processes.h"

struct file_watch {
  int fd;                                        // inotify
  std::map<int, std::string> directories;        // by watch descriptor
  std::set<std::string> present;                 // paths that exist
  std::set<std::string> told;                    // those that were told, so that their end is
  std::map<std::string, std::string> profiles;   // last known content, by path
  std::map<std::string, size_t> records;         // bytes of each companion's record that are told
  std::map<std::string, process_actor> touched;  // who last was about to change a path
};

[[nodiscard]] bool file_watch_open(file_watch& watch);

// Whether anything is told about the path, which is absolute.
bool file_watch_wants(const file_watch& watch, const std::string& path);

// Whether a companion listens at the path, whose datagrams are told.
bool file_watch_listens(const file_watch& watch, const std::string& path);

// Such a path is about to be made, emptied, renamed, removed or sent to.
void file_watch_touch(file_watch& watch, const std::string& path, const process_actor& actor);

// The effects of all changes since the last call.
std::vector<journal_effect> file_watch_take(file_watch& watch);
