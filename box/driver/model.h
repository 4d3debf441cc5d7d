// The radio driver's model: the state of the radios and what each request does to it.
//
// The model never touches a caller's memory. The trap layer reads what a request carries, calls
// driver_handle and writes the answer back, so the model is plain data in, plain data out:
//
//   driver_request r = {};
//   r.bss = 0; r.request = 0x8BE2; r.length = 13; r.input = "LEDEnable=1";
//   int status = driver_handle(state, r);   // 0, and ra0 keeps LEDEnable=1
//
// While a radio's first interface (ra0, ra8) is down, requests that need its hardware fail with
// ENETDOWN: stations, counters, survey, load, steering, frequency, rate. Texts still work, and so
// do queries that only ask what the driver can do or what its WPS does. While a radio starts, all
// requests work, but no BSS beacons yet.
#pragma once

#include <cstdint>

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/board.h"
#include "base/clock.h"
#include "base/mac.h"
#include "scenario/document.h"
#include "trap/requests.h"

constexpr uint16_t kDriverTextMax = 1536;  // bytes of a text, terminator included
constexpr int kDriverStationsMax = 128;
constexpr int kDriverEepromWords = 512;

// An access list, from the profile and the texts AccessPolicy and ACL...
struct driver_acl {
  int policy;  // 0 off, 1 only those listed, 2 all but those listed
  std::vector<mac_address> list;
};

constexpr size_t kDriverSsidMax = 32;

using driver_members = std::vector<std::pair<std::string, std::string>>;

// Something that changed on the air.
//
// "beacon": "what" is "begins", "changes" or "stops". Unless it stops, "ssid" (with "ssid_hex" if
// its bytes are not UTF-8), "hidden" (0 or 1), "auth", "encryption" and "channel" follow: the
// setting that the interface beacons.
//
// "station": "what" is "joins", "roams" or "leaves", "mac" its address, "from" the interface that
// it was at unless it joins, and "why" one of these:
//
//   off air, on air     a BSS stopped or began to beacon
//   disconnected        by the text DisConnectSta
//   returned            its time away after that, or after it went off air with its BSS, is over
//   transition          a transition request asked it to go
//   access list         the list or its policy keeps it out, or lets it in again
//   blacklist           blacklisted, or no longer
//   appeared            its scenario has it appear now
//   switched off        its scenario has it leave now
//   wps                 a WPS session let it in
//   room                the radio had as many stations as it can take, and now has fewer
//   scenario            its scenario was changed: it is new, gone, or belongs elsewhere
struct driver_effect {
  const char* effect;     // "beacon" or "station"
  std::string interface;  // raN; of a station: where it is now, or where it was when it leaves
  driver_members members;
  int64_t time_us;  // of the box, when it happened
};

struct driver_bss {
  std::map<std::string, std::string> settings;  // the last value of each Key=Value text
  bool up;
  std::string ssid;  // this and the next three: from the profile or a text
  std::string auth, encryption;
  bool hidden;
  size_t ssid_lost;  // bytes of the profile's SSID beyond the 32 that a beacon can have
  driver_acl acl;
  double counters[kScenarioBssCounters];
  double ssid_rx_bytes, ssid_tx_bytes;  // since the last query of the SSID counters
};

// A WPS session. The codes that callers read follow from it and the time.
struct driver_wps {
  bool running;
  int bss;  // N of raN where it was started
  bool by_pin;
  int64_t start_us;
  bool pin_right;
  int32_t state, status;  // while none runs: final codes of the last session
};

struct driver_radio {
  std::map<std::string, std::string> profile;  // what the first interface read when it went up
  bool on;
  int channel;
  bool load_on;
  bool btm_on;
  bool nonassoc_on;
  int64_t ready_us;                  // no BSS beacons before
  std::vector<mac_address> watched;  // non-associated stations to watch
  int64_t survey_us;                 // start of the last survey; below 0: none since it went up
  driver_wps wps;
  bool ate;  // between ATESTART and ATESTOP
  uint16_t eeprom[kDriverEepromWords];
};

// What keeps a station from being at a BSS.
enum driver_obstacle : uint8_t {
  kObstacleUnknown,  // the scenario has only just put the station where it is
  kObstacleNone,
  kObstacleNotYet,  // before it appears
  kObstacleLeft,
  kObstacleAway,
  kObstacleWps,  // it waits for a session
  kObstacleOffAir,
  kObstacleAccessList,
  kObstacleBlacklist,
  kObstacleFull,
};

using driver_obstacles = std::array<driver_obstacle, kBoardMaxInterfaces>;  // at raN

struct driver_station {
  scenario_station is;
  bool associated;
  int bss;           // while associated
  int preferred;     // where a transition request sent it, -1: nowhere
  int64_t since_us;  // association
  uint8_t aid;
  int64_t returns_us;  // it stays away until then
  bool joined_by_wps;
  driver_obstacles obstacles;  // when last looked at
  scenario_traffic traffic;
};

struct driver_blacklisted {
  int radio;
  mac_address mac;
  int64_t until_us;  // kDriverNever: until taken off
};

struct driver_action_frame {
  int64_t time_us;
  int bss;
  uint32_t category;
  mac_address mac;
  std::string body;  // without the zeros at its end
};

constexpr int64_t kDriverNever = INT64_MAX;

struct driver_state {
  const board* hardware;
  box_clock clock;
  scenario around;
  bool scenario_changed;  // by an event; cleared by whoever publishes the scenario
  int64_t now_us;         // everything due by then has happened
  driver_radio radios[kScenarioRadios];
  driver_bss bss[kBoardMaxInterfaces];  // ra0 .. ra15
  std::vector<driver_station> stations;
  std::vector<driver_blacklisted> blacklist;
  std::vector<driver_action_frame> action_frames;  // the last ones
  // Files that the hardware's self-test leaves, for the gateway to write: path and text.
  std::vector<std::pair<std::string, std::string>> files;
  driver_members beacons[kBoardMaxInterfaces];  // the settings last told; empty: beacons nothing
  std::vector<driver_effect> effects;           // what has changed since the gateway took them
  // Words after `gwbox fail` from events that have happened, for the gateway to carry out.
  std::vector<std::string> fails;
};

struct driver_request {
  int bss;  // N of raN; the interface exists
  uint32_t request;
  uint16_t flags;      // as the caller set them
  uint16_t length;     // as the caller announced it: bytes, for kRequestGetPriv entries
  std::string input;   // the caller's buffer, driver_input_size() bytes of it
  int64_t now_us;      // the box's time
  uint8_t address[6];  // of the interface, as the kernel has it
  // The answer.
  std::string output;      // for the caller's buffer; never more than the caller announced
  std::string frame;       // for the request frame itself, after the name; at most 16 bytes
  bool has_answer_length;  // the frame's length field becomes answer_length
  uint16_t answer_length;
  bool has_answer_flags;  // the same for the flags
  uint16_t answer_flags;
  std::vector<std::pair<std::string, std::string>> decoded;  // what it meant, for the journal
};

// A freshly loaded driver on that board, with the default scenario or the given one around it. The
// caller sets the clock's start.
void driver_init(driver_state& state, const board& hardware);
void driver_init(driver_state& state, const board& hardware, const scenario& around);

// The box's time now, to be used for now_us.
int64_t driver_now_us(const driver_state& state);

// What happens around the driver. Times as in driver_request.
//
// A radio's module was loaded: its interfaces from FIRST_N on exist, are down and have no settings.
// FIRST_N is 0 or 8; for a module of both bands this is called with each.
void driver_radio_loaded(driver_state& state, int first_n, int64_t now_us);

// raN went up: it takes its settings from its band's profile, whose text is PROFILE.
void driver_interface_up(driver_state& state, int n, const std::string& profile, int64_t now_us);

// raN went down or disappeared: its stations leave.
void driver_interface_down(driver_state& state, int n, int64_t now_us);

// Lets everything happen that is due by then: stations come and go, counters grow, events occur. It
// stops early when an event changes the speed, since the clock then shows another time.
void driver_advance(driver_state& state, int64_t now_us);

// When something will next happen by itself; kDriverNever if nothing will.
int64_t driver_next_us(const driver_state& state);

// Puts a changed scenario into effect at the state's time, its speed included. Stations that are
// still in it keep their association.
void driver_take_scenario(driver_state& state, const scenario& around);

// True when raN beacons: it is up, and its radio is on, up and no longer starting.
bool driver_beacons(const driver_state& state, int n);

// How many bytes of the caller's buffer are input of the request; 0 for most queries.
size_t driver_input_size(uint32_t request, uint16_t flags, uint16_t length);

// How many bytes of an answer the caller's buffer holds: as announced, except for requests whose
// length counts something else.
size_t driver_room(uint32_t request, uint16_t length);

// Handles the request. Returns 0 or a negative errno; with -E2BIG the answer length may be set.
[[nodiscard]] int driver_handle(driver_state& state, driver_request& request);
