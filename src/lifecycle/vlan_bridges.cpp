#include "lifecycle/vlan_bridges.h"

#include <cstdio>
#include <cstring>

#include "profile/values.h"
#include "sys/board.h"
#include "sys/netdev.h"

namespace {

constexpr int kPositions = 16;
constexpr int kPositionsSingleBand = 8;
constexpr int kFirstId = 2;
constexpr int kLastId = 4095;
constexpr int kAnyLength = 255;
constexpr int kUdmaLimit = 4;

struct device_name {
  char text[16];
};

// A walk over the BSS positions that collects those of one VLAN.
struct vlan_walk {
  int ids[kPositions];
  int count;
  bool handled[kPositions];
};

}  // namespace

// The VLAN ids that were bridged, at the position of each group's first BSS. Never
// cleared, so that a teardown finds those of all setups. Read and written in a turn only.
static int vlan_table[kPositions];

static bool in_range(int id) {
  return id >= kFirstId && id <= kLastId;
}

static device_name numbered(const char* prefix, int number) {
  device_name name;
  snprintf(name.text, sizeof name.text, "%s%d", prefix, number);
  return name;
}

static device_name vlan_device(int id) {
  device_name name;
  snprintf(name.text, sizeof name.text, "%s.%d", "eth0", id);
  return name;
}

static bool udma_enabled(int max_len) {
  return profile_number(bss_profile(kRadio24), "UdmaEnable", max_len) == 1;
}

static void make_bridge(const device_name& bridge, int id) {
  // The add fails harmlessly if the bridge exists, such as br0.
  bridge_ioctl(bridge.text, nullptr, kBridgeAdd);
  vconfig_ioctl("eth0", id, kVlanAdd);
  const device_name device = vlan_device(id);
  bridge_ioctl(bridge.text, device.text, kBridgeAddInterface);
  if_ioctl(bridge.text, nullptr, nullptr, 0, 1);
  if_ioctl(device.text, nullptr, nullptr, 0, 1);
}

// The next position, from `from` on, with an id in range that is not handled yet; `count`
// when there is none.
static int next_vlan(const vlan_walk& walk, int from) {
  int position = from;
  while (position < walk.count && (walk.handled[position] || !in_range(walk.ids[position])))
    ++position;
  return position;
}

// Adds the interfaces of a VLAN, from its first position on, to the bridge or removes
// them from it.
static void change_members(vlan_walk* walk, int first, const device_name& bridge, int op) {
  for (int position = first; position < walk->count; ++position) {
    if (walk->handled[position] || walk->ids[position] != walk->ids[first]) continue;
    bridge_ioctl(bridge.text, numbered("ra", position).text, op);
    walk->handled[position] = true;
  }
}

void wifi_setupVlanBridges() {
  if (udma_enabled(kAnyLength)) return;
  vlan_walk walk = {};
  walk.count = isSingleBand() != 0 ? kPositionsSingleBand : kPositions;
  for (int i = 0; i < walk.count; ++i)
    walk.ids[i] = bss_number(i + 1, "VLAN_ID", kAnyLength);
  int bridges = 0;
  for (int i = next_vlan(walk, 0); i < walk.count; i = next_vlan(walk, i + 1)) {
    vlan_table[i] = walk.ids[i];
    const device_name bridge = numbered("br", bridges++);
    make_bridge(bridge, walk.ids[i]);
    change_members(&walk, i, bridge, kBridgeAddInterface);
  }
}

void wifi_teardownVlanBridges() {
  if (udma_enabled(kUdmaLimit)) return;
  vlan_walk walk = {};
  walk.count = kPositions;
  memcpy(walk.ids, vlan_table, sizeof walk.ids);
  int bridges = 0;
  for (int i = next_vlan(walk, 0); i < walk.count; i = next_vlan(walk, i + 1)) {
    const int id = walk.ids[i];
    if (id != kFirstId) vconfig_ioctl(vlan_device(id).text, id, kVlanDelete);
    const device_name bridge = numbered("br", bridges);
    change_members(&walk, i, bridge, kBridgeDeleteInterface);
    if_ioctl(bridge.text, nullptr, nullptr, 0, 0);
    if (bridges != 0) bridge_ioctl(bridge.text, nullptr, kBridgeDelete);
    ++bridges;
  }
}
