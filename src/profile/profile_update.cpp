#include <sys/time.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/trace.h"
#include "profile/profile.h"
#include "profile/profile_files.h"
#include "profile/profile_text.h"
#include "sys/lock.h"
#include "sys/whole_file.h"

namespace {

struct request {
  std::string_view key;  // NUL behind it
  int index;             // 0 in the forms without an index
  const char* value;
};

// One update on its way from the argument list to the new content.
struct update {
  const char* name;  // the function in messages
  bool with_index;
  bool forced;
  request* requests = nullptr;  // owned by run_update
  int request_count = 0;
  int changed = 0;
  int unchanged = 0;
  bool refused = false;
  text_buffer content = {};
};

}  // namespace

// Every key and value that are taken fit one line, "Key=Value" and its end.
static_assert(kProfileKeyMax + 1 + (kProfileValueBuffer - 1) + 1 <= kProfileLineMax);

// Why a request cannot be stored, or null.
static const char* objection(const request& wanted, bool with_index) {
  const size_t key_length = wanted.key.size();
  const size_t value_length = strlen(wanted.value);
  if (wanted.key.find_first_of("\r\n=") != wanted.key.npos) return "line end or '=' in the key";
  if (strpbrk(wanted.value, "\r\n") != nullptr) return "line end in the value";
  if (with_index && strchr(wanted.value, ';') != nullptr) return "';' in a field";
  if (key_length > kProfileKeyMax) return "key too long";
  if (value_length >= kProfileValueBuffer) return "value too long";
  return nullptr;
}

// The next request of an argument list; false at its end. A va_list passed by
// itself is a copy on most processors: the caller's would not move on.
static bool next_request(bool with_index, va_list* list, request* wanted) {
  wanted->key = va_arg(*list, const char*);
  if (wanted->key.empty()) return false;
  wanted->index = with_index ? va_arg(*list, int) : 0;
  wanted->value = va_arg(*list, const char*);
  return true;
}

// Counts the requests. False for a negative index among them, reported.
static bool count_requests(update* work, va_list list) {
  va_list walk;
  va_copy(walk, list);
  request wanted;
  bool valid = true;
  while (valid && next_request(work->with_index, &walk, &wanted)) {
    ++work->request_count;
    valid = wanted.index >= 0;
  }
  va_end(walk);
  if (valid) return true;
  trace_rpc_error(work->name, "Index %d is error, it should be 0 or positive\n", wanted.index);
  return false;
}

// False for a request that cannot be stored, reported.
static bool accept_request(const update& work, const request& wanted) {
  trace_rpc(work.name, "%s: param:%s[%d]=%s\n", work.name, wanted.key.data(), wanted.index,
            wanted.value);
  const char* reason = objection(wanted, work.with_index);
  if (reason == nullptr) return true;
  trace_rpc_error(work.name, "%s refused: %s\n", wanted.key.data(), reason);
  return false;
}

// Takes the requests over. False for one that cannot be stored.
static bool take_requests(update* work, va_list list) {
  va_list walk;
  va_copy(walk, list);
  request* wanted = work->requests;
  bool accepted = true;
  while (accepted && next_request(work->with_index, &walk, wanted))
    accepted = accept_request(*work, *wanted++);
  va_end(walk);
  return accepted;
}

static const request* match(const update& work, std::string_view line) {
  // A forced update acts on its first key only.
  const int count = work.forced && work.request_count > 0 ? 1 : work.request_count;
  for (int i = 0; i < count; ++i) {
    if (sets_key(line, work.requests[i].key)) return &work.requests[i];
  }
  return nullptr;
}

// The value that the request gives a line, in `out`. False when it does not fit.
static bool new_value(const update& work, const request& wanted, std::string_view old,
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
  // The whole line is shown, its line end too.
  const int length = static_cast<int>(work->content.length - start - 1);
  trace_rpc(work->name, "%s %.*s\n success\n", forced_trace, length, work->content.data + start);
}

// Works on a line that a request names. `kept` is where the lines before it begin
// that stay as they are and are not written yet: they are copied in one piece.
static void change_line(update* work, const request& wanted, std::string_view line,
                        const char** kept) {
  setting found = {};
  // It has a "=", since it sets the key.
  static_cast<void>(parse_setting(line, &found));
  char buffer[kProfileValueBuffer];
  std::string_view value;
  if (!new_value(*work, wanted, found.value, buffer, &value)) {
    trace_rpc_error(work->name, "%s refused: value too long\n", wanted.key.data());
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
    const request* wanted = match(*work, line);
    if (wanted != nullptr) change_line(work, *wanted, line, &kept);
  }
  text_append(&work->content, {kept, static_cast<size_t>(old.data() - kept)});
  if (!work->forced || work->changed > 0 || work->request_count == 0 || work->refused) return;
  // A last line without a line end must not swallow the appended one.
  const text_buffer& content = work->content;
  if (content.length > 0 && content.data[content.length - 1] != '\n') {
    text_append(&work->content, "\n");
  }
  append_setting(work, work->requests[0].key, work->requests[0].value, "add new param");
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

// Puts the new content in the place of the profile, then of the mirror. From
// the first rename or write on the update counts as done: what fails then is
// reported and does not change the result.
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
    case file_step::open:
      report(work, "2 open", temporary);
      return kProfileFailed;
    case file_step::write:
      report(work, "2 write", temporary);
      return kProfileFailed;
    case file_step::done:
      break;
  }
  replace_profile(work, path, temporary, old);
  return kProfileWritten;
}

static unsigned finish(const update& work, const char* path, const file_image& old) {
  if (work.refused || work.content.failed) return kProfileFailed;
  if (work.forced && work.request_count == 0) return kProfileUnchanged;
  if (!work.forced && work.unchanged == work.request_count) {
    fputs("no change\n", stderr);
    return kProfileUnchanged;
  }
  if (work.changed + work.unchanged != work.request_count) return kProfileFailed;
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

static unsigned run_requests(update* work, const char* path, va_list list) {
  if (!take_requests(work, list)) return kProfileFailed;
  const int lock = fwrite_lock(profile_files_of(path)->lock);
  const unsigned result = update_locked(work, path);
  funlock(lock);
  return result;
}

static unsigned run_update(update* work, const char* path, va_list list) {
  if (!count_requests(work, list)) return kProfileUnchanged;
  // One more than there are: next_request notes the end in it.
  const size_t places = static_cast<size_t>(work->request_count) + 1;
  work->requests = static_cast<request*>(calloc(places, sizeof(request)));
  if (work->requests == nullptr) return kProfileFailed;
  const unsigned result = run_requests(work, path, list);
  free(work->requests);
  return result;
}

static unsigned _wifiprofile_updateParam(const char* path, int with_index, va_list list) {
  update work = {.name = __func__, .with_index = with_index != 0, .forced = false};
  return run_update(&work, path, list);
}

static unsigned _wifiprofile_updateParam_force(const char* path, int with_index, va_list list) {
  update work = {.name = __func__, .with_index = with_index != 0, .forced = true};
  return run_update(&work, path, list);
}

unsigned wifiprofile_updateParam(const char* path, ...) {
  va_list list;
  va_start(list, path);
  const unsigned result = _wifiprofile_updateParam(path, 0, list);
  va_end(list);
  return result;
}

unsigned wifiprofile_updateParam_with_index(const char* path, ...) {
  va_list list;
  va_start(list, path);
  const unsigned result = _wifiprofile_updateParam(path, 1, list);
  va_end(list);
  return result;
}

unsigned wifiprofile_updateParam_force(const char* path, ...) {
  va_list list;
  va_start(list, path);
  const unsigned result = _wifiprofile_updateParam_force(path, 0, list);
  va_end(list);
  return result;
}

unsigned wifiprofile_updateParam_with_index_force(const char* path, ...) {
  va_list list;
  va_start(list, path);
  const unsigned result = _wifiprofile_updateParam_force(path, 1, list);
  va_end(list);
  return result;
}

char* _replace_param_value_with_index(const char* old_value, const char* new_field, int index,
                                      char* out) {
  memset(out, 0, 4);
  if (replace_field(old_value, new_field, index, out, kProfileValueBuffer) < 0) out[0] = '\0';
  return out;
}
