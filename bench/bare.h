#pragma once

#include <stdint.h>

// The work that the bare server does for each procedure.

enum bare_procedure {
  kBareGetter = 1,
  kBareSetter,
  kBareProfileGetter,
  kBareTextChanging,
  kBareTextSame,
  kBareStationCount,
  kBareCounters,
  kBareBytesSent,
  kBareStationTable,
  kBareStationList,
  kBareStationListAsked,  // with a query for each listed station
  kBareCommand,
};

// Added to one of the first five: calls bare_duties() first.
enum { kBareWithDuties = 100 };

// The first field of a key of the 2.4 GHz profile as a number: open, fstat, read, close, scan.
int bare_profile_number(const char* key);

// Sets a key of the profile: lock, read, write a temporary file, flush, rename it over the
// profile, write the mirror, unlock. Returns 0, or -1 if the key is missing.
int bare_update(const char* key, const char* value);

// The same for a value that is already set: lock, read, compare, unlock. Returns 0, or -1 if
// the value differs.
int bare_compare(const char* key, const char* value);

// A driver request to ra0.
struct query {
  unsigned request;
  uint16_t sub;
  uint16_t length;
};
extern const struct query kStationTable;
extern const struct query kStatistics;
extern const struct query kCounters;
extern const struct query kSsidBytes;

// Issues the query on a new socket, as the daemon does. Ends the process on failure.
void bare_query(struct query query, char* buffer);

// The queries for a station list: table, statistics and, with `asked`, one for each of the
// first 32 stations of the first BSS.
void bare_station_list(int asked, char* buffer);

// Runs the command that switches the radio's measurements with posix_spawn and waits for it.
// Returns 0, or -1 if it failed.
int bare_command(int enable);

// The daemon's other duties in a call. Each message checks its marker files, and a profile read
// takes the lock. A text setter first reads, under a separate lock, whether the BSS is a
// backhaul.
void bare_duties(unsigned procedure);
