#pragma once

#include <span>
#include <string_view>

// The driver's profile files: one plain-text file per band, with lines "Key=Value",
// shared with the driver and with other processes of the box.
//
//   role       2.4 GHz                      5 GHz
//   profile    /tmp/mt76xx_24.dat           /tmp/mt76xx_5.dat
//   lock file  /tmp/.mt76xx_24.dat.lock     /tmp/.mt76xx_5.dat.lock
//   mirror     /tmp/mt76xx_24.dat.hnc       /tmp/mt76xx_5.dat.hnc
//   temporary  /tmp/wifitemp.24.1.<n>       /tmp/wifitemp.5.1.<n>
//   forced     /tmp/wifitemp.24.<n>         /tmp/wifitemp.5.<n>
//
// A path that contains "mt76xx_24.dat" selects the 2.4 GHz set, any other path the 5 GHz
// set. <n> is 0 to 999.
//
// A line's key is everything before its first "="; it is compared exactly. The value is
// the rest without the line's last character, which is taken to be the newline, so a last
// line without one loses a character. A line has at most 1727 characters; the excess
// counts as further lines. A value may be a list with one ";"-separated field per BSS,
// starting with field 0.
//
// Every call opens the file, locks it (shared for reads, exclusive for updates), works
// and closes it; the store keeps nothing between calls. An update writes the new content
// to the temporary file, flushes it and renames it over the profile. A reader without the
// lock, and a kill at any moment, therefore finds the old or the new profile complete. A
// profile that cannot be renamed over (a symbolic link, a file with several names, a
// mount point, another filesystem) is overwritten in place with one write and then
// truncated. If it becomes shorter there, a kill between the two leaves the old one's
// last lines after the new ones. The mirror is overwritten after the profile, still under
// the lock, and never read here. It gets the profile's mode, and is not written unless it
// is our own file, see diag/own_file.h.

// Copies the value of `key` and a NUL into `buffer`, which holds max_len + 1 bytes. If
// several lines have the key, the first whose value fits is used. Returns 1, or 0 when
// there is none.
[[nodiscard]] int wifiprofile_getParam(const char* path, const char* key, char* buffer,
                                       int max_len);

// Copies one field of the value of `key`, a value of at most 255 characters, and a NUL. A
// field followed by ";" is cut to max_len; the last field is copied whole whatever
// max_len says: kept on purpose. `buffer` must therefore always hold a whole value,
// kProfileFieldBuffer bytes. Returns 1, or 0 when key or field is missing or the index is
// negative.
constexpr int kProfileFieldBuffer = 256;
[[nodiscard]] int wifiprofile_getParam_with_index(const char* path, const char* key, int index,
                                                  char* buffer, int max_len);

constexpr unsigned kProfileWritten = 1;
constexpr unsigned kProfileUnchanged = 2;  // nothing to change, or a negative index
constexpr unsigned kProfileFailed = 0;

struct profile_setting {
  std::string_view key;
  int index;  // of the field; 0 for whole values
  std::string_view value;
};

enum class update_form {
  // Whole values. A missing key fails the call, and nothing is written.
  kValues,
  // One field of each value. A shorter list is extended with empty fields.
  kFields,
  // The forced forms take one setting. They write its line even if the value is
  // unchanged, and append a missing line, with the field as its whole value.
  kForcedValues,
  kForcedFields,
};

// Refused with a message, nothing changed: a newline in a key or value, a ";" in a field,
// a key of more than 31 characters, a value too long for kProfileValueBuffer.
unsigned profile_update(const char* path, update_form form,
                        std::span<const profile_setting> settings);

// The same with lists: pairs of key and value, or triples of key, int index and field,
// ended by an empty key.
unsigned wifiprofile_updateParam(const char* path, ...);
unsigned wifiprofile_updateParam_with_index(const char* path, ...);
unsigned wifiprofile_updateParam_force(const char* path, ...);
unsigned wifiprofile_updateParam_with_index_force(const char* path, ...);

// Builds in `out`, zeroed and of kProfileValueBuffer bytes, the list `old_value` with
// field `index` replaced by `new_field`, and returns `out`. If the list would not fit,
// `out` stays empty.
constexpr int kProfileValueBuffer = 1568;
char* _replace_param_value_with_index(const char* old_value, const char* new_field, int index,
                                      char* out);
