// One trapped call while it is handled, and the kinds of calls.
#pragma once

#include "gateway/state.h"
#include "trap/calls.h"

struct trap_call {
  uint64_t id;
  int32_t tid;
  uint32_t arch;
  int number;
  trapped call;
  uint64_t arguments[kTrapArguments];
  uint32_t request;  // of an ioctl; else one of kFault...Module
  bool is_short;     // a fault cuts the answer to short_bytes
  size_t short_bytes;
  bool has_count;  // a fault puts count at the start of the answer
  uint32_t count;
  // A wireless request:
  uint64_t pointer;  // of the caller's buffer
  size_t length_at;  // offset of the length in the frame
  driver_request asked;
  // A VLAN request:
  vlan_request vlan;
  // A module call:
  const module_row* module;  // null: not one of the driver's
};

// How one kind of call is handled. READ checks the call itself and fills ENTRY; ACT carries it out.
// Both return 0 or a negative errno, and only ACT writes to the caller's memory.
struct trap_kind {
  int (*read)(trap_state&, trap_call&, journal_entry&);
  int (*act)(trap_state&, trap_call&, journal_entry&);
};

extern const trap_kind kTrapKindWireless, kTrapKindVlan, kTrapKindModule;

// False once the caller is gone; its thread id may have been reused by then.
bool trap_still_waiting(const trap_state& trap, const trap_call& c);
