// What happens around the driver: interfaces go up and down, files of /sys and /proc are written.
#include <poll.h>

#include "base/files.h"
#include "gateway/effects.h"
#include "host/profiles.h"

static const char* profile_of(int n) {
  return n < kBoardFirst5ghz ? kProfile24 : kProfile5;
}

static void journal_cut_ssid(trap_state& trap, int n) {
  const driver_bss& bss = trap.driver.bss[n];
  if (bss.ssid_lost == 0) return;
  journal_entry entry = {};
  entry.name = "profile";
  entry.interface = "ra" + std::to_string(n);
  entry.decoded = {{"ssid_bytes_lost", std::to_string(bss.ssid_lost)}};
  entry.has_text = true;
  entry.text = bss.ssid;
  journal_append(trap.log, entry, driver_now_us(trap.driver));
}

static const process_actor* actor_of(const trap_state& trap, const std::string& name) {
  auto actor = trap.interface_actors.find(name);
  return actor == trap.interface_actors.end() ? nullptr : &actor->second;
}

static void tell_interface(trap_state& trap, const std::string& name, bool up, bool gone) {
  auto known = trap.interfaces.find(name);
  bool was_up = known != trap.interfaces.end() && known->second;
  trap.interfaces[name] = up;
  if (gone) trap.interfaces.erase(name);
  if (was_up == up || name == "lo" || name.starts_with("air")) return;
  journal_effect told = {};
  told.effect = "interface";
  told.interface = name;
  told.members = {{"what", up ? "up" : "down"}};
  effect_tell_by(trap, told, actor_of(trap, name));
}

// The driver reads its profile when an interface goes up.
static void set_up(trap_state& trap, int n, bool up) {
  if (trap.up[n] == up) return;
  trap.up[n] = up;
  int64_t now = driver_now_us(trap.driver);
  if (up) {
    driver_interface_up(trap.driver, n, profile_file_read(profile_of(n)), now);
    journal_cut_ssid(trap, n);
  } else {
    driver_interface_down(trap.driver, n, now);
  }
  effect_tell_air(trap, actor_of(trap, "ra" + std::to_string(n)));
}

static void ask_all(trap_state& trap) {
  for (int n = 0; n < kBoardMaxInterfaces; ++n) {
    set_up(trap, n, links_is_up(trap.socket, ("ra" + std::to_string(n)).c_str()));
  }
}

void trap_begin(trap_state& trap) {
  bool lost = false;
  for (const links_change& change : links_take(trap.links, lost))
    trap.interfaces[change.name] = change.up;
}

static void follow_links(trap_state& trap) {
  bool lost = false;
  for (const links_change& change : links_take(trap.links, lost)) {
    int n = board_interface_number(change.name.c_str());
    tell_interface(trap, change.name, change.up, change.gone);
    if (n >= 0) set_up(trap, n, change.up);
    if (change.gone) vlan_forget(trap.vlans, change.name);
  }
  if (lost) ask_all(trap);
}

static void follow_sysfs(trap_state& trap) {
  for (const sysfs_write& write : sysfs_take(trap.sysfs)) {
    journal_entry entry = {};
    entry.name = write.path.starts_with("/proc/") ? "procfs" : "sysfs";
    entry.decoded = {{"path", write.path}};
    entry.length = static_cast<uint16_t>(write.text.size());
    entry.has_text = true;
    entry.text = write.text;
    journal_append(trap.log, entry, driver_now_us(trap.driver));
  }
}

static bool is_message_to_controller(const journal_effect& effect) {
  return effect.effect == std::string_view("datagram") && effect.members[0].second == "hnc";
}

static void follow_files(trap_state& trap) {
  for (journal_effect& effect : file_watch_take(trap.files)) {
    if (is_message_to_controller(effect)) effect.cause = rpc_calls_controller(trap.calls);
    effect_tell(trap, effect);
  }
}

// Polls first: every trapped call comes here, and usually there is no news.
void trap_catch_up(trap_state& trap) {
  pollfd news[] = {
      {trap.links, POLLIN, 0}, {trap.sysfs.notify, POLLIN, 0}, {trap.files.fd, POLLIN, 0}};
  if (poll(news, 3, 0) <= 0) return;
  if (news[0].revents) follow_links(trap);
  if (news[1].revents) follow_sysfs(trap);
  if (news[2].revents) follow_files(trap);
}
