#include "trust/footprint.h"

#include <dirent.h>
#include <fcntl.h>
#include <net/if.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

#include "support/files.h"
#include "trust/heap_page.h"
#include "trust/tracee.h"

static std::set<std::string> names_in(const std::string& directory) {
  std::set<std::string> names;
  DIR* open = opendir(directory.c_str());
  if (open == nullptr) return names;
  while (const dirent* entry = readdir(open)) {
    if (entry->d_name[0] != '.' || entry->d_name[1] != '\0') names.insert(entry->d_name);
  }
  closedir(open);
  names.erase("..");
  return names;
}

static std::string proc() {
  return "/proc/" + std::to_string(service_pid());
}

static std::set<std::string> descriptors() {
  std::set<std::string> all;
  const std::string directory = proc() + "/fd/";
  for (const std::string& name : names_in(directory)) {
    if (kept_descriptors().count(atoi(name.c_str())) != 0) continue;
    char target[256];
    const ssize_t length = readlink((directory + name).c_str(), target, sizeof target);
    if (length > 0) all.insert(name + " " + std::string(target, static_cast<size_t>(length)));
  }
  return all;
}

static std::set<std::string> children() {
  std::set<std::string> all;
  const std::string tasks = proc() + "/task/";
  for (const std::string& task : names_in(tasks)) {
    std::istringstream list(read_file(tasks + task + "/children"));
    for (std::string pid; list >> pid;)
      all.insert(pid);
  }
  return all;
}

static std::set<std::string> files() {
  std::set<std::string> all;
  for (const char* directory : {"/tmp/", "/nvram/"}) {
    for (const std::string& name : names_in(directory))
      all.insert(directory + name);
  }
  // Band steering makes and removes this one at any time.
  all.erase("/tmp/mtk_bnd_file");
  return all;
}

footprint take_footprint() {
  return {heap_blocks(), descriptors(), children(), files()};
}

static void list_new(const char* what, const std::set<std::string>& before,
                     const std::set<std::string>& now, std::string* text) {
  for (const std::string& one : now) {
    if (before.count(one) == 0) *text += std::string(text->empty() ? "" : ", ") + what + one;
  }
}

std::string what_is_left(const footprint& before, const footprint& now) {
  std::string text;
  list_new("descriptor ", before.descriptors, now.descriptors, &text);
  list_new("child ", before.children, now.children, &text);
  list_new("file ", before.files, now.files, &text);
  return text;
}

std::string interface_states() {
  std::string states;
  const std::string directory = "/sys/class/net/";
  for (const std::string& name : names_in(directory)) {
    const unsigned long flags =
        strtoul(read_file(directory + name + "/flags").c_str(), nullptr, 16);
    states += name + ((flags & IFF_UP) != 0 ? " up\n" : " down\n");
  }
  return states;
}

std::string held_lock() {
  for (const char* path : {"/tmp/.mt76xx_24.dat.lock", "/tmp/.mt76xx_5.dat.lock"}) {
    const int file = open(path, O_RDWR | O_CLOEXEC);
    if (file < 0) continue;
    const bool taken = flock(file, LOCK_EX | LOCK_NB) == 0;
    close(file);
    if (!taken) return path;
  }
  return "";
}
