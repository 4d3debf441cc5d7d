#include "gateway/file_watch.h"

#include <dirent.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "base/files.h"
#include "base/report.h"
#include "client/base/profile_keys.h"
#include "gateway/profile_diff.h"
#include "host/profiles.h"

static constexpr const char* kRecords = "/run/gwbox";
static constexpr const char* kWatched[] = {"/tmp", "/nvram", kRecords};
static constexpr const char* kRecordEnd = ".jsonl";
static constexpr size_t kTouchedMax = 1024;

// Lock files and files on their way to another name begin like this.
static bool is_passing(const std::string& name) {
  return name.starts_with(".") || name.starts_with("wifitemp");
}

// The box's own journals are in the same directory.
static bool is_record(const std::string& directory, const std::string& name) {
  return directory == kRecords && name.ends_with(kRecordEnd) && !name.starts_with("journal");
}

static bool is_told(const std::string& directory, const std::string& name) {
  return directory != kRecords && !is_passing(name);
}

// Where the companions listen, and what they call their record.
static constexpr struct {
  const char* path;
  const char* record;
} kListeners[] = {{"/var/run/dcsD", "dcs"}, {"/var/run/mtk_ctrl_path", "mtk_ctrl"}};

static const char* record_of(const std::string& path) {
  for (const auto& row : kListeners) {
    if (path == row.path) return row.record;
  }
  return nullptr;
}

static std::string listener_of(const std::string& record) {
  for (const auto& row : kListeners) {
    if (record == row.record) return row.path;
  }
  return "";
}

static void note_present(file_watch& watch, const std::string& directory) {
  DIR* names = opendir(directory.c_str());
  if (!names) return;
  while (dirent* entry = readdir(names))
    watch.present.insert(directory + "/" + entry->d_name);
  closedir(names);
}

bool file_watch_open(file_watch& watch) {
  watch.fd = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  if (watch.fd < 0) return report_errno(nullptr, "watch the box's files");
  for (const char* directory : kWatched) {
    int added = inotify_add_watch(watch.fd, directory,
                                  IN_CREATE | IN_DELETE | IN_MOVE | IN_CLOSE_WRITE | IN_ONLYDIR);
    if (added < 0) return report_errno(nullptr, "watch %s", directory);
    watch.directories[added] = directory;
    note_present(watch, directory);
  }
  for (const char* path : {kProfile24, kProfile5})
    watch.profiles[path] = profile_file_read(path);
  return true;
}

bool file_watch_wants(const file_watch& watch, const std::string& path) {
  std::string directory = path_parent(path), name = path.substr(path.rfind('/') + 1);
  for (const auto& [descriptor, watched] : watch.directories) {
    if (watched == directory) return is_told(directory, name);
  }
  return false;
}

bool file_watch_listens(const file_watch&, const std::string& path) {
  return record_of(path) != nullptr;
}

void file_watch_touch(file_watch& watch, const std::string& path, const process_actor& actor) {
  if (watch.touched.size() == kTouchedMax) watch.touched.clear();
  watch.touched[path] = actor;
}

static journal_effect effect_by(const file_watch& watch, const char* effect,
                                const std::string& path) {
  journal_effect told = {};
  told.effect = effect;
  auto actor = watch.touched.find(path);
  if (actor == watch.touched.end()) return told;
  told.pid = actor->second.pid;
  told.comm = actor->second.comm;
  told.cause = actor->second.cause;
  return told;
}

static void tell_profile(file_watch& watch, const std::string& path,
                         std::vector<journal_effect>& effects) {
  std::string& known = watch.profiles[path];
  std::string content = profile_file_read(path);
  for (const profile_change& change : profile_changes(known, content)) {
    journal_effect told = effect_by(watch, "key", path);
    told.members = {{"file", path}, {"key", change.key}};
    if (change.field >= 0) told.members.push_back({"field", std::to_string(change.field)});
    if (change.had) told.members.push_back({"before", change.before});
    if (change.has) told.members.push_back({"after", change.after});
    told.secret = profile_key_is_secret(change.key);
    effects.push_back(told);
  }
  known = content;
}

// In /tmp anybody has files: only those of the daemon and its companions are told.
static bool concerns_gateway(const file_watch& watch, const std::string& path) {
  auto actor = watch.touched.find(path);
  bool by_gateway = actor != watch.touched.end() && actor->second.of_gateway;
  return by_gateway || watch.told.contains(path) || path.starts_with("/nvram/");
}

static void tell_file(file_watch& watch, const std::string& path, const char* what,
                      std::vector<journal_effect>& effects) {
  if (!concerns_gateway(watch, path)) return;
  watch.told.insert(path);
  journal_effect told = effect_by(watch, "file", path);
  told.members = {{"what", what}, {"path", path}};
  effects.push_back(told);
}

static std::string text_of(const nlohmann::json& value) {
  return value.is_string() ? value.get<std::string>()
                           : value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

static void tell_record_line(const file_watch& watch, const std::string& name,
                             const std::string& line, std::vector<journal_effect>& effects) {
  nlohmann::ordered_json record = nlohmann::ordered_json::parse(line, nullptr, false);
  if (!record.is_object() || !record.contains("size")) return;  // a start or a signal
  journal_effect told = effect_by(watch, "datagram", listener_of(name));
  told.members = {{"to", name}};
  for (const auto& [member, value] : record.items()) {
    if (member != "time" && member != "hex") told.members.push_back({member, text_of(value)});
  }
  effects.push_back(told);
}

// A companion writes whole lines.
static void tell_record(file_watch& watch, const std::string& path,
                        std::vector<journal_effect>& effects) {
  std::string text = file_read(path), name = path.substr(path.rfind('/') + 1);
  size_t& told = watch.records[path];
  name.erase(name.rfind('.'));
  for (size_t end; (end = text.find('\n', told)) != std::string::npos; told = end + 1) {
    tell_record_line(watch, name, text.substr(told, end - told), effects);
  }
}

// A link on its way to another name has a name by chance.
static bool is_link(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

static void take_event(file_watch& watch, const inotify_event& event,
                       std::vector<journal_effect>& effects) {
  auto directory = watch.directories.find(event.wd);
  if (directory == watch.directories.end() || event.len == 0 || (event.mask & IN_ISDIR)) return;
  std::string path = directory->second + "/" + event.name;
  bool gone = (event.mask & (IN_DELETE | IN_MOVED_FROM)) != 0;
  if (!gone && is_link(path)) return;
  bool was = gone ? watch.present.erase(path) > 0 : !watch.present.insert(path).second;
  bool written = (event.mask & (IN_CLOSE_WRITE | IN_MOVED_TO)) != 0;
  if (is_record(directory->second, event.name)) {
    if (written) tell_record(watch, path, effects);
  } else if (watch.profiles.contains(path)) {
    if (written || gone) tell_profile(watch, path, effects);
  } else if (is_told(directory->second, event.name)) {
    if (gone && was) tell_file(watch, path, "removed", effects);
    if (!gone && !was) tell_file(watch, path, "made", effects);
    if (event.mask & IN_MOVED_TO && was) tell_file(watch, path, "replaced", effects);
  }
}

std::vector<journal_effect> file_watch_take(file_watch& watch) {
  alignas(inotify_event) char bytes[16384];
  std::vector<journal_effect> effects;
  for (ssize_t got; (got = read(watch.fd, bytes, sizeof bytes)) > 0;) {
    for (ssize_t at = 0; at < got;) {
      const inotify_event* event = reinterpret_cast<const inotify_event*>(bytes + at);
      take_event(watch, *event, effects);
      at += static_cast<ssize_t>(sizeof *event + event->len);
    }
  }
  return effects;
}
