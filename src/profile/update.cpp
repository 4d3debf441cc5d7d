#include <sys/time.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/trace.h"
#include "profile/files.h"
#include "profile/store.h"
#include "profile/text.h"
#include "sys/lock.h"
#include "sys/whole_file.h"

namespace {

// An update in progress.
struct update {
  const char* name;  // the function to name in messages
  bool with_index;
  bool forced;
  std::span<const profile_setting> settings;
  size_t changed = 0;
  size_t unchanged = 0;
  bool refused = false;
  text_buffer content = {};
};

}  // namespace

// Every accepted key and value fit in one line, "Key=Value" and its newline.
static_assert(kProfileKeyMax + 1 + (kProfileValueBuffer - 1) + 1 <= kProfileLineMax);

// Why a setting cannot be stored; null if it can.
static const char* objection(const profile_setting& wanted, bool with_index) {
  if (wanted.key.find_first_of("\r\n=") != wanted.key.npos) return "line end or '=' in the key";
  if (wanted.value.find_first_of("\r\n") != wanted.value.npos) return "line end in the value";
  if (with_index && wanted.value.find(';') != wanted.value.npos) return "';' in a field";
  if (wanted.key.size() > kProfileKeyMax) return "key too long";
  if (wanted.value.size() >= kProfileValueBuffer) return "value too long";
  return nullptr;
}

static int shown_length(std::string_view text) {
  return static_cast<int>(text.size());
}

static void report_refusal(const update& work, std::string_view key, const char* reason) {
  trace_rpc_error(work.name, "%.*s refused: %s\n", shown_length(key), key.data(), reason);
}

static bool accept_setting(const update& work, const profile_setting& wanted) {
  trace_rpc(work.name, "%s: param:%.*s[%d]=%.*s\n", work.name, shown_length(wanted.key),
            wanted.key.data(), wanted.index, shown_length(wanted.value), wanted.value.data());
  const char* reason = objection(wanted, work.with_index);
  if (reason != nullptr) report_refusal(work, wanted.key, reason);
  return reason == nullptr;
}

static bool accept_indexes(const update& work) {
  for (const profile_setting& wanted : work.settings) {
    if (wanted.index >= 0) continue;
    trace_rpc_error(work.name, "Index %d is error, it should be 0 or positive\n", wanted.index);
    return false;
  }
  return true;
}

static const profile_setting* match(const update& work, std::string_view line) {
  // A forced update uses its first setting only.
  const size_t count = work.forced && !work.settings.empty() ? 1 : work.settings.size();
  for (const profile_setting& wanted : work.settings.first(count)) {
    if (sets_key(line, wanted.key)) return &wanted;
  }
  return nullptr;
}

// The setting's new value for a line, in `out`. False when it does not fit.
static bool new_value(const update& work, const profile_setting& wanted, std::string_view old,
                      char (&out)[kProfileValueBuffer], std::string_view* value) {
  if (!work.with_index) {
    *value = wanted.value;
    return true;
  }
  const int length = replace_field(old, wanted.value, wanted.index, out, sizeof out);
  if (length < 0) return false;
  *value = {out, static_cast<size_t>(length)};
  return true;
}

static void append_setting(update* work, std::string_view key, std::string_view value,
                           const char* forced_trace) {
  const size_t start = work->content.length;
  text_append(&work->content, key);
  text_append(&work->content, "=");
  text_append(&work->content, value);
  text_append(&work->content, "\n");
  ++work->changed;
  if (!work->forced || work->content.failed) return;
  // The trace shows the whole line, including its newline.
  const int length = static_cast<int>(work->content.length - start - 1);
  trace_rpc(work->name, "%s %.*s\n success\n", forced_trace, length, work->content.data + start);
}

// Changes a line that a setting names. `kept` is the start of the unchanged lines before
// it that are not yet written: they are copied in one piece.
static void change_line(update* work, const profile_setting& wanted, std::string_view line,
                        const char** kept) {
  setting found = {};
  // A line that sets the key has a "=".
  static_cast<void>(parse_setting(line, &found));
  char buffer[kProfileValueBuffer];
  std::string_view value;
  if (!new_value(*work, wanted, found.value, buffer, &value)) {
    report_refusal(*work, wanted.key, "value too long");
    work->refused = true;
    return;
  }
  if (!work->forced && value == found.value) {
    ++work->unchanged;
    return;
  }
  text_append(&work->content, {*kept, static_cast<size_t>(line.data() - *kept)});
  append_setting(work, found.key, value, "update param");
  *kept = line.data() + line.size();
}

static void build_content(update* work, std::string_view old) {
  text_reserve(&work->content, old.size() + kProfileLineMax);
  const char* kept = old.data();
  while (!old.empty() && !work->refused) {
    const std::string_view line = next_line(&old);
    const profile_setting* wanted = match(*work, line);
    if (wanted != nullptr) change_line(work, *wanted, line, &kept);
  }
  text_append(&work->content, {kept, static_cast<size_t>(old.data() - kept)});
  if (!work->forced || work->changed > 0 || work->settings.empty() || work->refused) return;
  // Terminate a last line without a newline before appending.
  const text_buffer& content = work->content;
  if (content.length > 0 && content.data[content.length - 1] != '\n') {
    text_append(&work->content, "\n");
  }
  append_setting(work, work->settings[0].key, work->settings[0].value, "add new param");
}

static void report(const update& work, const char* step, const char* path) {
  const int error = errno;
  fprintf(stderr, "%s %s %s error", work.name, step, path);
  errno = error;
  perror("open file");
}

static void make_temporary_name(const update& work, int band, char* name, size_t size) {
  timeval now;
  gettimeofday(&now, nullptr);
  srandom(static_cast<unsigned>(now.tv_usec));
  snprintf(name, size, work.forced ? "%s.%d.%d" : "%s.%d.1.%d", "/tmp/wifitemp", band,
           static_cast<int>(random() % 1000));
}

// Replaces the profile, then the mirror. From the first rename or write on the update
// counts as done: failures are reported and do not change the result.
static void replace_profile(const update& work, const char* path, const char* temporary,
                            const file_image& old) {
  const text_buffer& content = work.content;
  const bool renamed = old.renameable && file_rename_over(temporary, path, &old);
  if (!renamed) {
    if (!file_overwrite(path, content.data, content.length, &old)) report(work, "copy back", path);
    file_remove(temporary);
  }
  const char* mirror = profile_files_of(path)->mirror;
  if (!file_overwrite_own(mirror, content.data, content.length, old.mode))
    report(work, "mirror", mirror);
}

static unsigned commit(const update& work, const char* path, const file_image& old) {
  char temporary[64];
  make_temporary_name(work, profile_files_of(path)->band, temporary, sizeof temporary);
  switch (file_create(temporary, work.content.data, work.content.length)) {
    case file_step::kOpen:
      report(work, "2 open", temporary);
      return kProfileFailed;
    case file_step::kWrite:
      report(work, "2 write", temporary);
      return kProfileFailed;
    case file_step::kDone:
      break;
  }
  replace_profile(work, path, temporary, old);
  return kProfileWritten;
}

static unsigned finish(const update& work, const char* path, const file_image& old) {
  if (work.refused) return kProfileFailed;
  if (work.content.failed) {
    trace_rpc_error(work.name, "out of memory, %s is unchanged\n", path);
    return kProfileFailed;
  }
  if (work.forced && work.settings.empty()) return kProfileUnchanged;
  if (!work.forced && work.unchanged == work.settings.size()) {
    fputs("no change\n", stderr);
    return kProfileUnchanged;
  }
  if (work.changed + work.unchanged != work.settings.size()) return kProfileFailed;
  return commit(work, path, old);
}

static unsigned update_locked(update* work, const char* path) {
  file_image old;
  if (!file_read(path, &old)) {
    report(*work, "1 open", path);
    return kProfileFailed;
  }
  build_content(work, {old.data, old.length});
  const unsigned result = finish(*work, path, old);
  text_release(&work->content);
  file_release(&old);
  return result;
}

unsigned profile_update(const char* path, update_form form,
                        std::span<const profile_setting> settings) {
  const bool forced = form == update_form::kForcedValues || form == update_form::kForcedFields;
  update work = {
      .name = forced ? "_wifiprofile_updateParam_force" : "_wifiprofile_updateParam",
      .with_index = form == update_form::kFields || form == update_form::kForcedFields,
      .forced = forced,
      .settings = settings,
  };
  if (!accept_indexes(work)) return kProfileUnchanged;
  for (const profile_setting& wanted : settings) {
    if (!accept_setting(work, wanted)) return kProfileFailed;
  }
  const int lock = fwrite_lock(profile_files_of(path)->lock);
  const unsigned result = update_locked(&work, path);
  funlock(lock);
  return result;
}

char* _replace_param_value_with_index(const char* old_value, const char* new_field, int index,
                                      char* out) {
  memset(out, 0, 4);
  if (replace_field(old_value, new_field, index, out, kProfileValueBuffer) < 0) out[0] = '\0';
  return out;
}
