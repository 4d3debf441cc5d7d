#include "statistics/byte_counters.h"

#include "diag/trace.h"
#include "sys/board.h"
#include "sys/wext.h"

byte_counter mbss_stat_24g[kSsidsMax];
byte_counter mbss_stat_5g[kSsidsMax];

static byte_counter* counters_of(int bss) {
  return bss_to_radio_index(bss) == kRadio24 ? mbss_stat_24g : mbss_stat_5g;
}

int wlan_getSSIDTxRxBytes(int radio) {
  driver_ssid_table table = {};
  if (rtpriv_get_ioctl_2(radio, kRtprivObject, kSsidStatistics, &table, sizeof table) != 1) {
    REV_ERROR(" get radio bytes send failed. \n ");
    return -1;
  }
  REV_TRACE("Radio statistics SSID Num = %d\n", table.count);
  byte_counter* counters = counters_of(radio);
  for (int i = 0; i < table.count && i < kSsidsMax; ++i) {
    counters[i].received += table.entries[i].received_bytes;
    counters[i].sent += table.entries[i].sent_bytes;
  }
  return 0;
}

uint64_t bss_bytes(int bss, uint64_t byte_counter::*direction) {
  if (bss_to_radio_index(bss) == -1) return 0;
  return counters_of(bss)[bss_list_position(bss)].*direction;
}

uint64_t radio_bytes(int bss, uint64_t byte_counter::*direction) {
  if (bss_to_radio_index(bss) == -1) return 0;
  uint64_t sum = 0;
  for (int i = 0; i < kSsidsMax; ++i)
    sum += counters_of(bss)[i].*direction;
  return sum;
}

static int current_bytes(int bss, uint64_t (*sum)(int, uint64_t byte_counter::*),
                         uint64_t byte_counter::*direction, uint64_t* bytes) {
  const int radio = bss_to_radio_index(bss);
  const int status = radio == -1 ? -1 : wlan_getSSIDTxRxBytes(radio);
  *bytes = status == 0 ? sum(bss, direction) : 0;
  return status;
}

int wlan_getSSIDBytesSent(int bss, uint64_t* bytes) {
  return current_bytes(bss, bss_bytes, &byte_counter::sent, bytes);
}

int wlan_getSSIDBytesReceived(int bss, uint64_t* bytes) {
  return current_bytes(bss, bss_bytes, &byte_counter::received, bytes);
}

int wlan_getRadioBytesSent(int bss, uint64_t* bytes) {
  return current_bytes(bss, radio_bytes, &byte_counter::sent, bytes);
}

int wlan_getRadioBytesReceived(int bss, uint64_t* bytes) {
  return current_bytes(bss, radio_bytes, &byte_counter::received, bytes);
}

static void trace_entry(const char* caller, unsigned number,
                        const driver_station_statistics& entry) {
  const uint8_t* mac = entry.mac;
  trace_rev(caller, "\nOID_802_11_STA_STATISTICS entry %u\n", number);
  trace_rev(caller, "ReceivedByteCount=%u, TransmittedByteCount=%u\n", entry.received_bytes,
            entry.sent_bytes);
  trace_rev(caller, "%02X:%02X:%02X:%02X:%02X:%02X\n\n", mac[0], mac[1], mac[2], mac[3], mac[4],
            mac[5]);
}

int wlan_getAssocDevicesStatistics(int bss, driver_statistics_table* table) {
  if (rtpriv_get_ioctl(bss, kRtprivObject, kStationStatistics, table, sizeof *table) != 1) {
    return -1;
  }
  if (!console_trace_on()) return 0;
  REV_TRACE("STA statistics entry Num = %d\n", table->count);
  for (unsigned i = 0; i < stations_in(*table); ++i)
    trace_entry(__func__, i, table->entries[i]);
  return 0;
}
