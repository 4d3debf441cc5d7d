#pragma once

#include <stdint.h>

// The bare work behind the bare server's procedures.

enum bare_procedure {
  BARE_GETTER = 1,
  BARE_SETTER,
  BARE_PROFILE_GETTER,
  BARE_TEXT_CHANGING,
  BARE_TEXT_SAME,
  BARE_STATION_COUNT,
  BARE_COUNTERS,
  BARE_BYTES_SENT,
  BARE_STATION_TABLE,
  BARE_STATION_LIST,
  BARE_STATION_LIST_ASKED,  // with a query for each station listed
  BARE_COMMAND,
};

// Added to one of the first five: with bare_duties() before it.
enum { BARE_WITH_DUTIES = 100 };

// The first field of a key of the 2.4 GHz profile as a number: open, fstat, read,
// close, scan.
int bare_profile_number(const char* key);

// Sets a key of the profile: lock, read, write a temporary file, flush, rename it
// over the profile, write the mirror, unlock. Returns 0, or -1 without the key.
int bare_update(const char* key, const char* value);

// The same of a value that is in place: lock, read, compare, unlock. Returns 0, or
// -1 for another value.
int bare_compare(const char* key, const char* value);

// A request of the driver, as ra0 takes it.
struct query {
  unsigned request;
  uint16_t sub;
  uint16_t length;
};
extern const struct query kStationTable;
extern const struct query kStatistics;
extern const struct query kCounters;
extern const struct query kSsidBytes;

// Issues it on a socket of its own, as the daemon promises. Ends the process when
// it fails.
void bare_query(struct query query, char* buffer);

// The queries behind a station list: table, statistics, and with `asked` one for
// each of the first 32 stations of the first BSS.
void bare_station_list(int asked, char* buffer);

// posix_spawn of the command line that switches the radio's measurements, and the
// wait for it. Returns 0, or -1 when it failed.
int bare_command(int enable);

// What a call of the daemon has to do besides: each message looks for its marker
// files, a read of the profile takes the lock, and a text setter reads first whether
// the BSS is a backhaul, under a lock of its own.
void bare_duties(unsigned procedure);
