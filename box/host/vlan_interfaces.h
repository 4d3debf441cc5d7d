// VLAN interfaces, created and removed by the kernel's VLAN request. The box answers it itself,
// since not every kernel knows VLANs.
#pragma once

#include <cstdint>

#include <map>
#include <string>

// The request's record, the same for programs of either width.
struct vlan_request {
  int32_t command;
  char device[24];
  union {
    char name[24];
    int32_t id;
    uint32_t name_type;
  };
  int16_t priority;
};
static_assert(sizeof(vlan_request) == 56);

constexpr int32_t kVlanAdd = 0;     // on top of device
constexpr int32_t kVlanDelete = 1;  // device itself
constexpr int32_t kVlanSetNameType = 6;
constexpr int32_t kVlanGetLower = 8;  // answers in name
constexpr int32_t kVlanGetId = 9;     // answers in id

struct vlan_interface {
  std::string lower;
  int32_t id;
};

struct vlan_state {
  uint32_t name_type;  // form of a new interface's name
  std::map<std::string, vlan_interface> interfaces;
};

// The state after the kernel's start: a new interface gets a name such as "eth0.10".
void vlan_init(vlan_state& state);

// "add", "delete", ...; "unknown" for a command that is not answered.
const char* vlan_command_name(int32_t command);

// Handles the request; SOCKET: any socket. Returns 0 or a negative errno; a query's answer is in
// REQUEST.
[[nodiscard]] int vlan_handle(vlan_state& state, int socket, vlan_request& request);

// To be called when an interface has disappeared, for whatever reason.
void vlan_forget(vlan_state& state, const std::string& name);
