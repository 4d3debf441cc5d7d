#include "wlan/bss_service.h"

#include <cstdlib>

#include "diag/trace.h"
#include "profile/values.h"
#include "sys/board.h"
#include "sys/host_library.h"

static constexpr int kServiceBound = 8;
static constexpr int kNumberBound = 256;
static constexpr int kVlanBound = 32;
static constexpr int kRadioBound = 1;

static int read_field(const char* caller, int bss, const char* key,
                      char (&field)[kProfileFieldBuffer], int bound) {
  if (read_bss_field(bss, key, field, bound) != 0) return 0;
  // Says "update" although it was a read: kept on purpose.
  report_profile_failure(caller, "update", kBlankEnd);
  return -1;
}

int wlan_getBSSHNCService(int bss, int* service) {
  *service = 0;
  char field[kProfileFieldBuffer] = {};
  if (read_field(__func__, bss, "BSSHNCService", field, kServiceBound) != 0) return -1;
  *service = atoi(field);
  REV_TRACE("get BssHNCService:%d sucess \n", *service);
  return 0;
}

// Gives a backhaul BSS, of either band, the VLAN id of the first 2.4 GHz BSS.
static void copy_vlan(const char* caller, int bss) {
  char vlan[kProfileFieldBuffer] = {};
  if (read_bss_field(kRadio24, "VLANID", vlan, kVlanBound) == 0) return;
  if (write_bss_field(bss, "VLANID", vlan) != kProfileFailed) return;
  trace_rev_error(caller, "%s:set VLANID failed for index:%d\n", caller, bss);
}

int wlan_setBSSHNCService(int bss, int service) {
  if (service == kBackhaulService) copy_vlan(__func__, bss);
  return static_cast<int>(write_bss_field(bss, "BSSHNCService", decimal(service).text));
}

static int write_field(const char* caller, int bss, const char* key, const char* value) {
  return update_status(caller, write_bss_field(bss, key, value), kBlankEnd);
}

static int write_number(const char* caller, int bss, const char* key, int value) {
  return write_field(caller, bss, key, decimal(value).text);
}

static int read_number(const char* caller, int bss, const char* key, int* value) {
  char field[kProfileFieldBuffer] = {};
  if (read_field(caller, bss, key, field, kNumberBound) != 0) return -1;
  *value = atoi(field);
  return 0;
}

int wlan_set_bh_enable(int bss, int enable) {
  return write_number(__func__, bss, "BSSHNCBHEnable", enable);
}

int wlan_get_bh_enable(int bss, int* enable) {
  if (read_number(__func__, bss, "BSSHNCBHEnable", enable) != 0) return -1;
  REV_TRACE("BSSHNCEnable:%d\n ", *enable);
  return 0;
}

int wlan_set_hnc_replicate(int bss, int replicate) {
  return write_number(__func__, bss, "BSSHNCReplicate", replicate);
}

int wlan_get_hnc_replicate(int bss, int* replicate) {
  if (read_number(__func__, bss, "BSSHNCReplicate", replicate) != 0) return -1;
  REV_TRACE("BSSHNCReplicate:%d\n ", *replicate);
  return 0;
}

int wlan_set_hnc_wds_mode(int bss, int mode) {
  return write_number(__func__, bss, "BSSHNCWdsMode", mode);
}

int wlan_get_hnc_wds_mode(int bss, int* mode) {
  return read_number(__func__, bss, "BSSHNCWdsMode", mode);
}

int wlan_set_hnc_replicate_radio(int bss, const char* radio) {
  return write_field(__func__, bss, "BSSHNCReplicateRadio", radio);
}

int wlan_get_hnc_replicate_radio(int bss, char (&radio)[kProfileFieldBuffer]) {
  return read_field(__func__, bss, "BSSHNCReplicateRadio", radio, kRadioBound);
}

void wlan_syncBhSetting(int bss, int setting, const char* value) {
  int service = 0;
  if (wlan_getBSSHNCService(bss, &service) != 0 || service != kBackhaulService) return;
  rev_set_bh_setting(bss, setting, value);
}
