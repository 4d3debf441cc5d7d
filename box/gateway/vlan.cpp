// VLAN requests.
#include <cerrno>
#include <cstring>

#include "gateway/call.h"

static int read_vlan(trap_state&, trap_call& c, journal_entry& entry) {
  entry.name = "vlan";
  if (!caller_read(c.tid, c.arguments[2], &c.vlan, sizeof c.vlan)) return -EFAULT;
  const vlan_request& r = c.vlan;
  entry.interface.assign(r.device, strnlen(r.device, sizeof r.device - 1));
  entry.decoded = {{"command", vlan_command_name(r.command)}, {"device", entry.interface}};
  if (r.command == kVlanAdd) entry.decoded.push_back({"id", std::to_string(r.id)});
  return 0;
}

static int do_vlan(trap_state& trap, trap_call& c, journal_entry&) {
  int status = vlan_handle(trap.vlans, trap.socket, c.vlan);
  bool answers = c.vlan.command == kVlanGetLower || c.vlan.command == kVlanGetId;
  if (status != 0 || !answers) return status;
  if (!trap_still_waiting(trap, c)) return -EINTR;
  return caller_write(c.tid, c.arguments[2], &c.vlan, sizeof c.vlan) ? 0 : -EFAULT;
}

const trap_kind kTrapKindVlan = {read_vlan, do_vlan};
