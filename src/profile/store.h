#pragma once

#include <span>
#include <string_view>

// The driver's profile files: one plain-text file per band, lines "Key=Value",
// shared with the driver and with other processes of the box.
//
//   role       2.4 GHz                      5 GHz
//   profile    /tmp/mt76xx_24.dat           /tmp/mt76xx_5.dat
//   lock file  /tmp/.mt76xx_24.dat.lock     /tmp/.mt76xx_5.dat.lock
//   mirror     /tmp/mt76xx_24.dat.hnc       /tmp/mt76xx_5.dat.hnc
//   temporary  /tmp/wifitemp.24.1.<n>       /tmp/wifitemp.5.1.<n>
//   forced     /tmp/wifitemp.24.<n>         /tmp/wifitemp.5.<n>
//
// A path that contains "mt76xx_24.dat" selects the 2.4 GHz set, any other the
// 5 GHz set. <n> is 0 to 999.
//
// The key of a line is all that stands before its first "="; it is compared
// exactly. The value is the rest less the line's last character, taken to be
// the line end, so a last line without one reads one character short. A line
// has at most 1727 characters; what is longer counts as further lines. A value
// may be a list with one ";"-separated field per BSS, the first being field 0.
//
// Every call opens, locks (shared for reads, exclusive for updates), works and
// closes; the store keeps nothing between calls. The new content is written to
// the temporary file, flushed and renamed over the profile, so that a reader
// without the lock and a kill at any moment see the old or the new profile,
// whole. A profile that cannot be renamed over (a symbolic link, a file with
// several names, a mount point, another filesystem) is overwritten in place
// with one write and cut to length; there, and only where the profile becomes
// shorter, a kill between the two leaves the old one's last lines behind the
// new one. The mirror is overwritten after the profile, while the lock is held, and
// never read here. It gets the profile's mode, and is not written where it is none of
// our own files, see diag/own_file.h.

// Copies the value of `key` and a NUL into `buffer`, which holds max_len + 1
// bytes. Of several lines with the key the first whose value fits counts.
// Returns 1, or 0 when there is none.
[[nodiscard]] int wifiprofile_getParam(const char* path, const char* key, char* buffer,
                                       int max_len);

// Copies one field of the value of `key`, a value of at most 255 characters,
// and a NUL. A field that a ";" follows is cut to max_len; the last field is
// copied whole whatever max_len says, an asymmetry kept on purpose: so `buffer`
// holds a whole value, kProfileFieldBuffer bytes, always. Returns 1, or 0 when
// key or field are missing or the index is negative.
constexpr int kProfileFieldBuffer = 256;
[[nodiscard]] int wifiprofile_getParam_with_index(const char* path, const char* key, int index,
                                                  char* buffer, int max_len);

// Results of an update.
constexpr unsigned kProfileWritten = 1;
constexpr unsigned kProfileUnchanged = 2;  // all values in place, or a negative index
constexpr unsigned kProfileFailed = 0;

struct profile_setting {
  std::string_view key;
  int index;  // of the field; 0 where whole values are set
  std::string_view value;
};

enum class update_form {
  // Whole values. A key that is not in the file fails the call, and nothing is
  // written.
  kValues,
  // One field of each value. A list that is shorter is filled up with empty fields.
  kFields,
  // The forced forms take one setting. They write its line whether or not the value
  // changes and append it when it is missing, a field as its whole value.
  kForcedValues,
  kForcedFields,
};

// Refused with a message, nothing touched: a line end in a key or value, a ";"
// in a field, a key of more than 31 characters, a value that kProfileValueBuffer
// does not hold.
unsigned profile_update(const char* path, update_form form,
                        std::span<const profile_setting> settings);

// The same in lists: pairs of key and value, or triples of key, int index and
// field, closed by an empty key.
unsigned wifiprofile_updateParam(const char* path, ...);
unsigned wifiprofile_updateParam_with_index(const char* path, ...);
unsigned wifiprofile_updateParam_force(const char* path, ...);
unsigned wifiprofile_updateParam_with_index_force(const char* path, ...);

// Builds in `out`, zero-filled and of kProfileValueBuffer bytes, the list
// `old_value` with field `index` replaced by `new_field`, and returns `out`. A
// list that would not fit leaves `out` empty.
constexpr int kProfileValueBuffer = 1568;
char* _replace_param_value_with_index(const char* old_value, const char* new_field, int index,
                                      char* out);
