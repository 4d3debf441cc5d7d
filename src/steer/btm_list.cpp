#include "steer/btm_list.h"

#include <cstdio>
#include <cstring>

#include "diag/trace.h"
#include "statistics/byte_counters.h"
#include "steer/driver_records.h"
#include "steer/mac_text.h"
#include "sys/board.h"
#include "sys/wext.h"
#include "wlan/bss_service.h"
#include "wlan/rates.h"
#include "wlan/stations.h"

// The list of a BSS's stations: the data in the driver's tables, rates and, on the chip
// that reports it, BSS transition capability.

// Messages name the handler: kept on purpose.
static constexpr char kHandler[] = "wlan_get_btm_associated_device_1_svc";

struct bss_facts {
  int index;
  bool backhaul;
  bool mt7615;  // the chip that reports receive rates and capabilities
  driver_station_table stations;
  driver_statistics_table statistics;
};

struct mac_text {
  char text[18];
};

static mac_text text_of(const uint8_t (&mac)[6]) {
  mac_text out;
  snprintf(out.text, sizeof out.text, MAC_FORMAT, MAC_BYTES(mac));
  return out;
}

static constexpr int kNoRssi = -127;

// A chain without a signal reports 0 or -127.
static int strongest_rssi(const driver_station& station) {
  int strongest = kNoRssi;
  for (const int8_t rssi : station.rssi) {
    if (rssi > kNoRssi && rssi < 0 && rssi >= strongest) strongest = +rssi;
  }
  return strongest;
}

static void fill_signal(const driver_station& station, const char* mac, btm_station* out) {
  out->rssi = strongest_rssi(station);
  trace_rpc(kHandler, "STA %s: Rssi0 = %d, Rssi1 = %d, Rssi2 = %d, Rssi3 = %d, Max Rssi = %d \n ",
            mac, station.rssi[0], station.rssi[1], station.rssi[2], station.rssi[3], out->rssi);
}

static const driver_station_statistics* find_statistics(const driver_statistics_table& table,
                                                        const uint8_t (&mac)[6]) {
  for (unsigned i = 0; i < stations_in(table); ++i) {
    if (memcmp(table.entries[i].mac, mac, sizeof mac) == 0) return &table.entries[i];
  }
  return nullptr;
}

static constexpr uint8_t kPhyOfdm = 1;
static constexpr uint8_t kPhyVht = 4;

// A station without statistics gets zeros.
static void fill_traffic(const driver_station_statistics* statistics, btm_station* out) {
  if (statistics == nullptr) return;
  out->bytes_sent[0] = statistics->sent_bytes;
  out->bytes_rcv[0] = statistics->received_bytes;
  out->is_ht = statistics->phy_mode > kPhyOfdm;
  out->is_vht = statistics->phy_mode == kPhyVht;
}

static bool ask_capability(int index, const driver_station& station, uint8_t* capable) {
  driver_station_btm record = {};
  record.kind = kStationBtmAsk;
  memcpy(record.mac, station.mac, sizeof record.mac);
  if (rtpriv_get_ioctl(index, kRtprivObject, kStationBtm, &record, sizeof record + 1) != 1) {
    return false;
  }
  *capable = record.capable;
  return true;
}

static bool fill_capability(int index, const driver_station& station, const char* mac,
                            btm_station* out) {
  uint8_t capable = 0;
  if (!ask_capability(index, station, &capable)) {
    trace_rpc_error(kHandler, "query STA %s btm capability failed. \n ", mac);
    return false;
  }
  trace_rpc(kHandler, "STA %s capability = %d. \n ", mac, capable);
  out->flags = static_cast<uint8_t>(capable * 8);
  return true;
}

static void fill_rates(const bss_facts& bss, const driver_station& station, btm_station* out) {
  uint8_t tx_mcs = 0;
  getRate(station.tx_rate, &out->downlink_rate, &tx_mcs);
  uint8_t rx_mcs = tx_mcs;
  out->uplink_rate = out->downlink_rate;
  if (bss.mt7615) {
    uint16_t rx_rate = 0;
    setMCS(station.rx_rate, &rx_rate);
    getRate(rx_rate, &out->uplink_rate, &rx_mcs);
  }
  out->tx_mcs = tx_mcs;
  out->rx_mcs = rx_mcs;
}

static void trace_station(const char* mac, const btm_station& station) {
  trace_rpc(kHandler,
            "STA %s rssi=%d, downlink_rate=%d, uplink_rate=%d, tx_mcs=%d, rx_mcs=%d, "
            "bytes_sent=%lld, bytes_rcv=%lld, backhaul_sta=%d is_ht = %d is_vht = %d \n",
            mac, station.rssi, station.downlink_rate, station.uplink_rate, station.tx_mcs,
            station.rx_mcs, static_cast<long long>(station.bytes_sent[0]),
            static_cast<long long>(station.bytes_rcv[0]), station.backhaul_sta, station.is_ht,
            station.is_vht);
}

// False when the driver does not report the station's capability.
static bool fill_station(const bss_facts& bss, const driver_station& station, btm_station* out) {
  const mac_text mac = text_of(station.mac);
  fill_signal(station, mac.text, out);
  fill_traffic(find_statistics(bss.statistics, station.mac), out);
  out->backhaul_sta = bss.backhaul;
  memcpy(out->mac, mac.text, sizeof out->mac);
  fill_rates(bss, station, out);
  if (bss.mt7615 && !fill_capability(bss.index, station, mac.text, out)) return false;
  trace_station(mac.text, *out);
  return true;
}

// Stops at the first failure and leaves the count at 0.
static int fill_list(const bss_facts& bss, btm_list* list) {
  unsigned found = 0;
  for (unsigned i = 0; i < stations_in(bss.stations) && found < kBtmListMax; ++i) {
    const driver_station& station = bss.stations.entries[i];
    if (station.bss != bss_list_position(bss.index)) continue;
    if (!fill_station(bss, station, &list->stations[found])) return -1;
    ++found;
  }
  list->count = found;
  trace_rpc(kHandler, "total assoc STA num on SSID [%d] is %u\n", bss.index, found);
  return 0;
}

int list_btm_stations(int index, btm_list* list) {
  bss_facts bss = {};
  bss.index = index;
  if (wlan_getAssocDevicesTable_2(index, &bss.stations) == -1) {
    trace_rpc_error(kHandler, "can't get associated device list.\n");
    return -1;
  }
  if (wlan_getAssocDevicesStatistics(index, &bss.statistics) == -1) {
    trace_rpc_error(kHandler, "can't get associated device statistics.\n");
    return -1;
  }
  int service = 0;
  if (wlan_getBSSHNCService(index, &service) != 0) {
    trace_rpc_error(kHandler, "can't get BSS HNC Service.\n");
    // Returns success with an empty list: kept on purpose.
    return 0;
  }
  // The first BSS of a radio is never a backhaul.
  bss.backhaul = service == kBackhaulService && index != kRadio24 && index != kRadio5;
  bss.mt7615 = hasMTK7615() != 0;
  return fill_list(bss, list);
}
