#include "wlan/stations.h"

#include "diag/trace.h"
#include "sys/board.h"
#include "sys/wext.h"

static void trace_entry(const char* caller, unsigned number, const driver_station& entry) {
  const uint8_t* mac = entry.mac;
  trace_rev(caller, "RT_802_11_MAC_TABLE entry %u\n", number);
  trace_rev(caller, "ApIdx=%u, Aid=%u, Psm=%u, MimoPs=%u\n", entry.bss, entry.aid, entry.power_save,
            entry.mimo_power_save);
  trace_rev(caller, "AvgRssi0=%d, AvgRssi1=%d, AvgRssi2=%d\n", entry.rssi[0], entry.rssi[1],
            entry.rssi[2]);
  trace_rev(caller, "TxPkts=%u, TxFailures=%u\n", entry.tx_packets, entry.tx_failures);
  // Printed with its bytes reversed: kept on purpose.
  trace_rev(caller, "ConnectedTime=%u\n", __builtin_bswap32(entry.connected_time));
  trace_rev(caller, "%02X:%02X:%02X:%02X:%02X:%02X\n\n", mac[0], mac[1], mac[2], mac[3], mac[4],
            mac[5]);
}

static void trace_table(const char* caller, const driver_station_table& table) {
  trace_rev(caller, "p_deviceTable->Num = %d\n", static_cast<int>(table.count));
  for (unsigned i = 0; i < stations_in(table); ++i)
    trace_entry(caller, i, table.entries[i]);
}

static int read_table(const char* caller, int bss, driver_station_table* table) {
  if (rtpriv_get_ioctl(bss, kRtprivStationTable, 0, table, sizeof *table) != 1) return -1;
  // Skip some hundred messages, each of which would check the switch.
  if (console_trace_on()) trace_table(caller, *table);
  return 0;
}

int wlan_getAssocDevicesNum(int bss, int* count) {
  *count = 0;
  driver_station_table table = {};
  if (read_table(__func__, bss, &table) != 0) return -1;
  for (unsigned i = 0; i < stations_in(table); ++i) {
    if (table.entries[i].bss == bss_list_position(bss)) ++*count;
  }
  return 0;
}

int wlan_getAssocDevicesTable_2(int bss, driver_station_table* table) {
  return read_table(__func__, bss, table);
}
