#include "steer/nonassoc.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "diag/trace.h"
#include "profile/store.h"
#include "profile/values.h"
#include "steer/driver_records.h"
#include "steer/keys.h"
#include "steer/mac_text.h"
#include "sys/board.h"
#include "sys/wext.h"

static constexpr char kReportName[] = "wlan_getNonAssocRptTable";
static constexpr char kMacKey[] = "NonAssocReqMac";

int wlan_getNonAssocRptCapable(int radio, int* capable) {
  uint32_t answer = 0;
  *capable = 0;
  if (rtpriv_get_ioctl_2(radio, kRtprivObject, kObjectNonAssocCapable, &answer, sizeof answer) ==
      1) {
    *capable = 1;
    REV_TRACE("non associated STA report is capable. \n ");
    return 0;
  }
  if (errno == EOPNOTSUPP) {
    REV_TRACE("non associated STA report is not capable. \n ");
    return 0;
  }
  REV_ERROR("get non associated STA report capable failed. \n ");
  return -1;
}

int wlan_setNonAssocRptEnable(int radio, int enable) {
  const uint8_t value = static_cast<uint8_t>(enable);
  if (rtpriv_set_ioctl_2(radio, kRtprivObject, kObjectNonAssocEnable, &value, sizeof value) != 1) {
    REV_ERROR("set non associated report enable failed. \n ");
    return -1;
  }
  REV_TRACE("set non associated report enable = %d success. \n ", enable);
  force_value(radio, "NonAssocRptEnable", decimal(enable).text);
  return 0;
}

int wlan_getNonAssocRptEnable(int radio, int* enable) {
  char value[kKeyLength + 1] = "0";
  const int found =
      wifiprofile_getParam(bss_profile(radio), "NonAssocRptEnable", value, kKeyLength);
  *enable = atoi(value);
  REV_TRACE("non associated report enabled: %d\n ", *enable);
  return found;
}

int wlan_setNonAssocRequestMac(int radio, const char* mac) {
  if (write_key(__func__, radio, kMacKey, mac, kKeyLength) != 0) return -1;
  nonassoc_request station = {};
  parse_mac(mac, station.mac);
  station.first = mac[0];
  // The driver takes it as a query, although it sets something. The answer is ignored.
  if (rtpriv_get_ioctl_2(radio, kRtprivObject, kObjectNonAssoc, &station, sizeof station) != 1) {
    REV_ERROR("set non associated req mac failed. \n ");
    return -1;
  }
  REV_TRACE("set non associated req mac success. \n ");
  return 0;
}

// Subtracts without overflow, whatever the driver answers.
static int less(int32_t value, unsigned by) {
  return static_cast<int>(static_cast<unsigned>(value) - by);
}

static int32_t time_of(const probe_record& probe) {
  struct tm date = {};
  date.tm_year = less(probe.year, 1900);
  date.tm_mon = less(probe.month, 1);
  date.tm_mday = probe.day;
  date.tm_hour = probe.hour;
  date.tm_min = probe.minute;
  date.tm_sec = probe.second;
  date.tm_isdst = -1;  // determined by the time zone
  return static_cast<int32_t>(mktime(&date));
}

static void trace_probes(const nonassoc_station& station) {
  trace_rev(kReportName, "data count = %d, CyclicIndex = %d\n", station.count, station.newest);
  for (int i = 0; i < std::min<int>(station.count, kProbes); ++i) {
    const probe_record& probe = station.probes[i];
    trace_rev(kReportName,
              "dump probeDate: index = %d, rssi = %d, tm.tm_year=%d, tm.tm_mon=%d, tm.tm_mday=%d, "
              "tm.tm_hour=%d, tm.tm_min=%d, tm.tm_sec=%d\n",
              i, probe.rssi, probe.year, probe.month, probe.day, probe.hour, probe.minute,
              probe.second);
  }
}

static void take_probe(const probe_record& probe, const char* mac, nonassoc_answer* answer) {
  nonassoc_probe& filled = answer->probes[0];
  answer->valid = 1;
  filled.rssi = int32_t{probe.rssi};
  filled.time = time_of(probe);
  memset(filled.mac, 0, sizeof filled.mac);
  memcpy(filled.mac, mac, strnlen(mac, sizeof filled.mac));
  trace_rev(kReportName, "rssi = %d, mac = %s\n", filled.rssi, mac);
}

// Uses the station's first entry with a valid newest probe.
static void find_probe(const nonassoc_report& report, const char* mac, nonassoc_answer* answer) {
  uint8_t wanted[6];
  parse_mac(mac, wanted);
  for (int i = 0; i < std::min<int>(report.count, kNonAssocStations); ++i) {
    const nonassoc_station& station = report.stations[i];
    trace_rev(kReportName, "table.reportData[%d].MacAddr: " MAC_FORMAT " \n ", i,
              MAC_BYTES(station.mac));
    if (memcmp(station.mac, wanted, sizeof wanted) != 0) continue;
    const uint8_t newest = static_cast<uint8_t>(station.newest - 1);
    if (newest >= kProbes) {
      trace_rev_error(kReportName, " error cyc_idx %d\n ", newest);
      continue;
    }
    trace_probes(station);
    take_probe(station.probes[newest], mac, answer);
    return;
  }
}

int wlan_getNonAssocRptTable(int radio, nonassoc_answer* answer) {
  if (answer == nullptr) {
    REV_ERROR("input null pointer\n ");
    return -1;
  }
  nonassoc_report report = {};
  if (rtpriv_get_ioctl_2(radio, kRtprivObject, kObjectNonAssoc, &report, sizeof report) != 1) {
    REV_ERROR("get non assco report table, ioctl failed. \n ");
    return -1;
  }
  REV_TRACE("table.reportSize = %d\n", report.count);
  char mac[kMacKeyLength + 1] = {};
  if (wifiprofile_getParam(bss_profile(radio), kMacKey, mac, kMacKeyLength) == 0) {
    REV_ERROR("failed to get NonAssocReqMac from wifi profile. \n ");
    return -1;
  }
  find_probe(report, mac, answer);
  return 0;
}
