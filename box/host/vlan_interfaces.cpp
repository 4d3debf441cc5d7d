#include "host/vlan_interfaces.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "host/interfaces.h"

static constexpr int32_t kIdLimit = 4095;  // the kernel rejects 4095 too
static constexpr size_t kNameLimit = 15;

// Forms of a new interface's name: vlan0010, eth0.0010, vlan10, eth0.10.
static constexpr uint32_t kNameTypes = 4;
static constexpr uint32_t kDefaultNameType = 3;

static std::string name_of_new(uint32_t name_type, const std::string& lower, int32_t id) {
  char digits[16];
  snprintf(digits, sizeof digits, "%0*d", name_type < 2 ? 4 : 1, id);
  return (name_type % 2 == 0 ? "vlan" : lower + ".") + digits;
}

static int add(vlan_state& state, int socket, const std::string& lower, int32_t id) {
  if (!net_interface_exists(socket, lower.c_str())) return -ENODEV;
  if (id < 0 || id >= kIdLimit) return -ERANGE;
  for (const auto& [name, vlan] : state.interfaces) {
    if (vlan.lower == lower && vlan.id == id) return -EEXIST;
  }
  std::string upper = name_of_new(state.name_type, lower, id);
  if (upper.size() > kNameLimit) return -ENOBUFS;
  if (!net_make_upper(socket, lower, upper)) return -errno;
  state.interfaces[upper] = {lower, id};
  return 0;
}

static int remove(vlan_state& state, int socket, const std::string& name) {
  if (!net_interface_exists(socket, name.c_str())) return -ENODEV;
  if (!state.interfaces.contains(name)) return -EINVAL;
  if (!net_remove(name)) return -errno;
  state.interfaces.erase(name);
  return 0;
}

static int query(const vlan_state& state, int socket, const std::string& name,
                 vlan_request& request) {
  if (!net_interface_exists(socket, name.c_str())) return -ENODEV;
  auto found = state.interfaces.find(name);
  if (found == state.interfaces.end()) return -EINVAL;
  memset(request.name, 0, sizeof request.name);
  if (request.command == kVlanGetId) {
    request.id = found->second.id;
  } else {
    found->second.lower.copy(request.name, sizeof request.name - 1);
  }
  return 0;
}

static int set_name_type(vlan_state& state, uint32_t name_type) {
  if (name_type >= kNameTypes) return -EINVAL;
  state.name_type = name_type;
  return 0;
}

void vlan_init(vlan_state& state) {
  state = {};
  state.name_type = kDefaultNameType;
}

const char* vlan_command_name(int32_t command) {
  switch (command) {
    case kVlanAdd:
      return "add";
    case kVlanDelete:
      return "delete";
    case kVlanSetNameType:
      return "set_name_type";
    case kVlanGetLower:
      return "get_lower";
    case kVlanGetId:
      return "get_id";
    default:
      return "unknown";
  }
}

int vlan_handle(vlan_state& state, int socket, vlan_request& request) {
  std::string device(request.device, strnlen(request.device, sizeof request.device - 1));
  switch (request.command) {
    case kVlanAdd:
      return add(state, socket, device, request.id);
    case kVlanDelete:
      return remove(state, socket, device);
    case kVlanSetNameType:
      return set_name_type(state, request.name_type);
    case kVlanGetLower:
    case kVlanGetId:
      return query(state, socket, device, request);
    default:
      return -EOPNOTSUPP;
  }
}

void vlan_forget(vlan_state& state, const std::string& name) {
  state.interfaces.erase(name);
}
