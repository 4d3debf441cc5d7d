// The standard wireless queries that tools use.
#include <linux/wireless.h>
#include <cerrno>
#include <cstring>

#include <algorithm>
#include <iterator>

#include "driver/layout.h"
#include "driver/parts.h"

static constexpr uint32_t kModeMaster = 3;
static constexpr uint16_t kHardwareAddress = 1;
static constexpr size_t kNameSize = 16;

int driver_query_name(driver_state& state, driver_request& r) {
  char name[kNameSize] = "";
  strcpy(name, state.hardware->dual_band && r.bss >= kBoardFirst5ghz ? "IEEE 802.11ac"
                                                                     : "IEEE 802.11bgn");
  driver_answer_frame(r, name, sizeof name);
  return 0;
}

// The driver reports the channel, not the frequency: tools take small numbers for channels.
int driver_query_frequency(driver_state& state, driver_request& r) {
  layout_frequency frequency = {};
  frequency.mantissa = state.radios[driver_radio_of(r.bss)].channel;
  driver_decode(r, "channel", std::to_string(frequency.mantissa));
  driver_answer_frame(r, &frequency, sizeof frequency);
  return 0;
}

// Centre of the channel in kHz.
static int frequency_of(int channel, int radio) {
  return radio == 0 ? 2407000 + 5000 * channel : 5000000 + 5000 * channel;
}

// Tools look up a channel's frequency in this table.
int driver_query_range(driver_state&, driver_request& r) {
  static constexpr int kLow[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
  static constexpr int kHigh[] = {36,  40,  44,  48,  52,  56,  60,  64,  100, 104, 108, 112,
                                  116, 120, 124, 128, 132, 136, 140, 149, 153, 157, 161, 165};
  int radio = driver_radio_of(r.bss);
  iw_range range = {};
  range.we_version_compiled = WIRELESS_EXT;
  range.we_version_source = WIRELESS_EXT;
  auto add = [&](int channel) {
    iw_freq& entry = range.freq[range.num_frequency++];
    entry.m = frequency_of(channel, radio);
    entry.e = 3;
    entry.i = static_cast<uint8_t>(channel);
  };
  if (radio == 0) std::for_each(std::begin(kLow), std::end(kLow), add);
  if (radio == 1) std::for_each(std::begin(kHigh), std::end(kHigh), add);
  range.num_channels = range.num_frequency;
  return driver_answer(r, &range, sizeof range, sizeof range);
}

int driver_query_mode(driver_state&, driver_request& r) {
  driver_answer_frame(r, &kModeMaster, sizeof kModeMaster);
  return 0;
}

int driver_query_address(driver_state&, driver_request& r) {
  layout_address address = {};
  address.family = kHardwareAddress;
  memcpy(address.mac, r.address, sizeof r.address);
  driver_answer_frame(r, &address, sizeof address);
  return 0;
}

// Flags of 1 say that there is an SSID.
int driver_query_essid(driver_state& state, driver_request& r) {
  const std::string& ssid = state.bss[r.bss].ssid;
  if (r.length < ssid.size()) return -E2BIG;
  r.output = ssid;
  r.has_answer_length = true;
  r.answer_length = static_cast<uint16_t>(ssid.size());
  r.has_answer_flags = true;
  r.answer_flags = 1;
  driver_decode(r, "ssid", ssid);
  return 0;
}

int driver_query_rate(driver_state& state, driver_request& r) {
  layout_parameter rate = {};
  int64_t best = driver_best_rate(state, driver_radio_of(r.bss));
  rate.value = best > INT32_MAX ? INT32_MAX : static_cast<int32_t>(best);
  driver_decode(r, "bits_per_second", std::to_string(rate.value));
  driver_answer_frame(r, &rate, sizeof rate);
  return 0;
}
