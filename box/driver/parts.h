// Shared by the files of the driver model: common functions, and the handlers in the tables of
// requests, objects and texts.
#pragma once

#include <cstddef>

#include "driver/model.h"

constexpr int kDriverRadioBsss = 8;

inline int driver_radio_of(int bss) {
  return bss < kBoardFirst5ghz ? 0 : 1;
}

inline int driver_first_of(int radio) {
  return radio == 0 ? 0 : kBoardFirst5ghz;
}

inline bool driver_radio_up(const driver_state& state, int radio) {
  return state.bss[driver_first_of(radio)].up;
}

// Answers with a record of SIZE bytes, of which callers must have room for USED. A caller may
// announce a byte less than the whole record: the last byte is never needed.
[[nodiscard]] int driver_answer(driver_request& r, const void* record, size_t size, size_t used);

// Answers in the request frame.
void driver_answer_frame(driver_request& r, const void* record, size_t size);

// Copies the record that a caller set; -EMSGSIZE when it is shorter.
[[nodiscard]] int driver_take(const driver_request& r, void* record, size_t size);

void driver_decode(driver_request& r, const char* name, const std::string& value);

// A field of the ";"-separated list, "" when there are fewer.
std::string driver_field(const std::string& list, int index);

// The packed rate word of a scenario's rate: bits 0-5 MCS (VHT: 0-3 MCS, 4-5 streams less one),
// 7-8 width, 9 short guard interval, 13-15 mode. The dual-band chip codes OFDM rates its own way.
uint16_t driver_rate_word(const std::string& rate, bool dual_band_chip);

bool driver_is_dual_band_chip(const driver_state& state);

// The highest rate that the radio can have, in bit/s.
int64_t driver_best_rate(const driver_state& state, int radio);

// The channel that automatic selection would choose now: the one with the fewest neighbours.
int driver_best_channel(const driver_state& state, int radio);

// The associated stations of a radio, or of all with -1, in the order of their association ids.
std::vector<const driver_station*> driver_associated(const driver_state& state, int radio);

driver_station* driver_find_station(driver_state& state, const mac_address& mac);

// The station leaves its BSS. WHY as in driver_effect.
void driver_leave(driver_state& state, driver_station& station, const char* why);

// It is told to leave, and stays away as long as its scenario says.
void driver_disconnect(driver_state& state, driver_station& station);

// Tells of each BSS that beacons something else than when it was last told.
void driver_tell_beacons(driver_state& state);

// WHAT and WHY as in driver_effect. FROM: the N of raN, -1: none.
void driver_tell_station(driver_state& state, const driver_station& station, const char* what,
                         int from, const char* why);

// A scenario's seconds in microseconds; kDriverNever for a time below 0.
int64_t driver_microseconds(double seconds);

// Sets the counters of a BSS to what its scenario says.
void driver_take_counters(driver_bss& bss, const scenario_bss& given);

// Tells what is beaconed and moves stations to where they belong, after a change of either.
void driver_settle(driver_state& state);

// WPS, at the state's time.
void driver_wps_start(driver_state& state, int bss);
void driver_wps_stop(driver_state& state, int radio);
void driver_wps_advance(driver_state& state, int radio);
int64_t driver_wps_next_us(const driver_state& state, int radio);

// Requests.
int driver_query_stations(driver_state& state, driver_request& r);
int driver_query_name(driver_state& state, driver_request& r);
int driver_query_frequency(driver_state& state, driver_request& r);
int driver_query_range(driver_state& state, driver_request& r);
int driver_query_mode(driver_state& state, driver_request& r);
int driver_query_address(driver_state& state, driver_request& r);
int driver_query_essid(driver_state& state, driver_request& r);
int driver_query_rate(driver_state& state, driver_request& r);
int driver_do_e2p(driver_state& state, driver_request& r);
int driver_do_object(driver_state& state, driver_request& r);
int driver_do_text(driver_state& state, driver_request& r);

// Objects.
int driver_query_counters(driver_state& state, driver_request& r);
int driver_query_load(driver_state& state, driver_request& r);
int driver_query_traffic(driver_state& state, driver_request& r);
int driver_query_ssids(driver_state& state, driver_request& r);
int driver_query_survey(driver_state& state, driver_request& r);
int driver_set_steer(driver_state& state, driver_request& r);
int driver_set_action_frame(driver_state& state, driver_request& r);
int driver_query_operating_class(driver_state& state, driver_request& r);
int driver_query_nonassoc_capable(driver_state& state, driver_request& r);
int driver_set_nonassoc(driver_state& state, driver_request& r);
int driver_query_nonassoc(driver_state& state, driver_request& r);
int driver_query_wps_state(driver_state& state, driver_request& r);
int driver_query_wps_status(driver_state& state, driver_request& r);
int driver_query_uuid(driver_state& state, driver_request& r);
int driver_query_btm(driver_state& state, driver_request& r);
int driver_set_btm(driver_state& state, driver_request& r);
int driver_query_power(driver_state& state, driver_request& r);

// True when a query of the object, with that announced length, has input.
bool driver_object_carries(uint16_t sub, uint16_t length);
