#include "support/stations.h"

#include <gtest/gtest.h>

#include "support/files.h"

void gwbox(const std::string& words) {
  int status = -1;
  const std::string said = run("gwbox " + words + " 2>&1", &status);
  EXPECT_EQ(status, 0) << words << ": " << said;
}

void start_radios(const std::string& interfaces) {
  gwbox("set station 02:00:5e:00:00:01 gone");
  gwbox("set station 02:00:5e:00:00:02 gone");
  int status = -1;
  run("for i in " + interfaces + "; do ip link set $i up || exit 1; done", &status);
  EXPECT_EQ(status, 0) << interfaces;
}

void beacon_at_once() {
  gwbox("set radio ra0 bring_up_ms=0");
  gwbox("set radio ra8 bring_up_ms=0");
}

std::string station_mac(int n) {
  char text[18];
  snprintf(text, sizeof text, "02:00:5e:00:01:%02x", n);
  return text;
}

void set_station(int n, const std::string& words) {
  gwbox("set station " + station_mac(n) + " " + words);
}

void remove_station(int n) {
  set_station(n, "gone");
}

void set_stations(int count, int bss) {
  for (int n = 1; n <= count; ++n)
    set_station(n, "bss=" + std::to_string(bss) + " rssi=[-50] tx_rate='HT20 MCS7'");
}
