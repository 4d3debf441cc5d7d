// What happens around a gateway: stations, neighbours, outcomes, events. A scenario is a JSON
// document, checked against the schema in box/share, and the same as plain records.
#pragma once

#include <cstdint>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/mac.h"

constexpr const char* kScenarioDefault = "minimal";
constexpr const char* kScenarioPath = "/run/gwbox/scenario.json";  // inside the box
constexpr int kScenarioRadios = 2;                                 // ra0's and ra8's
constexpr int kScenarioBssCounters = 14;

struct scenario_traffic {
  double rx_bytes, tx_bytes, rx_packets, tx_packets, tx_failures;
};

struct scenario_station {
  mac_address mac;
  int bss;                  // 0-based: N of raN
  std::vector<int> others;  // where else it may go, in this order
  std::vector<int> rssi;    // dBm, one to four chains
  std::string tx_rate;      // towards the station, such as "VHT80 MCS9 NSS2 SGI", or a number
  std::string rx_rate;
  bool btm;                // knows BSS transition management
  bool asleep;             // power save
  bool by_wps;             // stays away until a WPS session of its BSS succeeds
  double appears, leaves;  // seconds; leaves below 0: stays
  double returns_after;    // seconds after it was disconnected, below 0: never; and at the earliest
                           // after it lost its BSS, below 0: as soon as that beacons again
  scenario_traffic start, per_second;
};

struct scenario_neighbour {
  mac_address bssid;
  int radio;  // 0 or 1
  std::string ssid;
  int channel;
  int rssi;
  std::string security;
  std::string mode;
};

struct scenario_observation {
  int rssi;
  int date[6];  // year, month, day, hour, minute, second
};

struct scenario_nonassoc {
  mac_address mac;
  int radio;
  int newest;  // cyclic index to report instead of the true one; -1: the true one
  std::vector<scenario_observation> observations;  // oldest first
};

enum scenario_outcome { kScenarioSuccess, kScenarioFailure, kScenarioTimeout };

struct scenario_wps {
  scenario_outcome outcome;
  double seconds;   // from the start of a session to its outcome
  double timeout;   // the same for a session that nobody answers
  std::string pin;  // the right one; empty: any
};

struct scenario_power {
  int channel, dbm;
};

// How long a radio calibrates before it beacons, where the scenario does not say. An assumption:
// radios of this class take a second or two.
constexpr int kScenarioBringUpMs = 1500;

struct scenario_radio {
  int channel;      // 0: as the profile says
  int bring_up_ms;  // of box time, from its first interface's going up to its first beacon
  bool btm;
  bool nonassoc;
  double survey_seconds;
  uint32_t load_period, load_busy;
  scenario_wps wps;
  std::vector<scenario_power> power;  // empty: the band's usual limits
};

struct scenario_bss {
  int bss;                                // 0-based
  double counters[kScenarioBssCounters];  // at the start
  double per_second[kScenarioBssCounters];
  double ssid_rx_bytes, ssid_tx_bytes;  // waiting for the next query of the SSID counters
};

struct scenario_event {
  double at;         // seconds
  std::string set;   // the words after `gwbox set`, or empty
  std::string fail;  // the words after `gwbox fail`, or empty
};

struct scenario {
  std::string name;
  std::string board;  // empty: kBoardDefault
  double speed;
  scenario_radio radios[kScenarioRadios];
  std::vector<scenario_station> stations;
  std::vector<scenario_neighbour> neighbours;
  std::vector<scenario_nonassoc> nonassoc;
  std::vector<scenario_bss> bss;
  std::vector<scenario_event> events;
  std::string text;  // the document
};

// Reads a document. WRONG gets a line for each mistake, which starts with NAME and the line number:
// "apartment.json:17: stations[3].rssi: expected 1 to 4 numbers".
[[nodiscard]] bool scenario_parse(const std::string& text, const std::string& name, scenario& s,
                                  std::string& wrong);

// Changes the scenario by the words after `gwbox set`. If words or values are wrong, it stays as it
// was and WRONG says why.
[[nodiscard]] bool scenario_edit(scenario& s, const std::vector<std::string>& words,
                                 std::string& wrong);

// The same for one line, whose words are separated by blanks; quotes keep a word together.
[[nodiscard]] bool scenario_edit_line(scenario& s, const std::string& line, std::string& wrong);

// What `gwbox set` can change: "station, ... or speed".
std::string scenario_kind_names();

// Sets the speed, whatever the document says.
void scenario_set_speed(scenario& s, double speed);

// The text of a shipped scenario; empty if there is none with that name.
std::string_view scenario_shipped(std::string_view name);

// The names of all shipped scenarios, and the same separated by ", ".
std::span<const char* const> scenario_all();
std::string scenario_names();

std::string_view scenario_schema();

// NAME_OR_FILE: a shipped scenario, else a file. Reports what is wrong and returns false.
[[nodiscard]] bool scenario_load(const std::string& name_or_file, scenario& s);

// `gwbox scenario list`, `show` and `check`. They return the exit status.
int scenario_print_list();
int scenario_print(const std::string& name);
int scenario_print_check(const std::string& file);
