// The radio driver's model: the state of the radios and what each private request does to it.
//
// The model never touches a caller's memory. The trap layer reads what a request carries, calls
// driver_handle and writes the answer back, so the model is plain data in, plain data out:
//
//   driver_request r = {};
//   r.bss = 0; r.request = 0x8BE2; r.length = 13; r.input = "LEDEnable=1";
//   int status = driver_handle(state, r);   // 0, and ra0 keeps LEDEnable=1
#pragma once

#include <stdint.h>

#include <map>
#include <string>

#include "board.h"

// Private requests, as numbered by the wireless extensions (private ones begin at 0x8BE0).
constexpr uint32_t DRIVER_GET_PRIV = 0x8B0D;  // list of the private requests
constexpr uint32_t DRIVER_OBJECT = 0x8BE1;    // object query or set, sub-command in the flags
constexpr uint32_t DRIVER_SET_TEXT = 0x8BE2;  // one Key=Value text
constexpr uint16_t DRIVER_SET_FLAG = 0x8000;  // in the flags: a set, not a query
constexpr uint16_t DRIVER_TEXT_MAX = 1536;    // bytes of a text set, terminator included

struct driver_bss {
  std::map<std::string, std::string> settings;  // the last value of each Key=Value text
  int32_t wps_status;
};

struct driver_state {
  const board* hardware;
  driver_bss bss[BOARD_MAX_INTERFACES];  // ra0 .. ra15
};

struct driver_request {
  int bss;  // N of raN; the interface exists
  uint32_t request;
  uint16_t flags;     // as the caller set them
  uint16_t length;    // as the caller announced it: bytes, for DRIVER_GET_PRIV entries
  std::string input;  // the caller's buffer, driver_input_size() bytes of it
  // The answer.
  std::string output;      // for the caller's buffer; never more than the caller announced
  bool has_answer_length;  // the frame's length field is to be set to answer_length
  uint16_t answer_length;
};

// A freshly loaded driver on that board.
void driver_init(driver_state& state, const board& hardware);

// N of an interface name raN, or -1 when the driver makes no interface of that name.
int driver_interface_number(const char* name);

// How many bytes of the caller's buffer the request carries in; 0 for a query.
size_t driver_input_size(uint32_t request, uint16_t flags, uint16_t length);

// True when the request's flags are a sub-command (DRIVER_SET_FLAG not part of it).
bool driver_has_sub(uint32_t request);

// What the journal calls the request: "set", "query", "object_set", "get_priv" or "unknown".
const char* driver_request_name(uint32_t request, uint16_t flags);

// Does the request. Returns 0 or a negative errno; -E2BIG may set the answer length as well.
[[nodiscard]] int driver_handle(driver_state& state, driver_request& request);
