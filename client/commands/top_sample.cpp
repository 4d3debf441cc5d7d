#include "commands/top_sample.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "base/moment.h"
#include "base/text.h"
#include "show/json.h"
#include "values/payload.h"
#include "values/stations.h"
#include "wire/lookup.h"

static double number(const top_station& station, const char* name) {
  const payload_field& field = stations_field(name);
  return payload_is_signed(field.type)
             ? static_cast<double>(payload_signed(field, station.record))
             : static_cast<double>(payload_unsigned(field, station.record));
}

static std::string_view address(const top_station& station) {
  return payload_bytes(stations_field("mac_address"), station.record);
}

static double busy_value(const top_station& station) {
  return std::max(station.sent_rate, 0.0) + std::max(station.received_rate, 0.0);
}
static double bss_value(const top_station& station) {
  return -station.bss;
}
// The address as a number. One with too many digits may become infinite.
static double station_value(const top_station& station) {
  double value = 0;
  for (const char c : text_lower(address(station))) {
    if (c != ':') value = value * 16 + (c >= 'a' ? c - 'a' + 10 : c - '0');
  }
  return -value;
}
static double rssi_value(const top_station& station) {
  constexpr double kBelowAll = -1000;
  const payload_field& field = stations_field("rssi");
  return payload_is_known(field, station.record) ? number(station, "rssi") : kBelowAll;
}
static double down_value(const top_station& station) {
  return number(station, "downlink_rate");
}
static double up_value(const top_station& station) {
  return number(station, "uplink_rate");
}
static double out_value(const top_station& station) {
  return station.sent_rate;
}
static double in_value(const top_station& station) {
  return station.received_rate;
}
static double sent_value(const top_station& station) {
  return number(station, "bytes_sent");
}
static double received_value(const top_station& station) {
  return number(station, "bytes_received");
}

static constexpr top_order kOrders[] = {
    {"busy", busy_value},         {"bss", bss_value},   {"station", station_value},
    {"rssi", rssi_value},         {"down", down_value}, {"up", up_value},
    {"out", out_value},           {"in", in_value},     {"sent", sent_value},
    {"received", received_value},
};

static double rate_since(const char* name, const top_station& then, const top_station& current) {
  uint64_t growth = 0;
  if (!payload_growth(stations_field(name), then.record, current.record, &growth)) return -1;
  return static_cast<double>(growth) / (current.taken - then.taken);
}

// Fills in the rates of a station that was in the earlier sample.
static void add_rates(top_station& current, const top_sample& before) {
  for (const top_station& then : before.stations) {
    if (then.bss != current.bss || address(then) != address(current)) continue;
    current.sent_rate = rate_since("bytes_sent", then, current);
    current.received_rate = rate_since("bytes_received", then, current);
  }
}

static void take_stations(top_sample& sample, int bss, std::string_view record,
                          const top_sample& before) {
  const payload_rows& rows = stations_rows();
  const double now = moment_now();
  for (uint32_t i = 0; i < payload_row_count(rows, record); ++i) {
    sample.stations.push_back({bss, std::string(payload_row(rows, record, i)), now, -1, -1});
    add_rates(sample.stations.back(), before);
  }
}

static failure_report no_radio(size_t asked) {
  return {kExitFailureCode, "failure_code",
          text_format("no radio is up: %s answered a failure code; 'wificonf wlan_load 1' and "
                      "then 'wificonf wlan_init' bring them up",
                      asked == 1 ? "the BSS" : text_format("all %zu BSSs", asked).c_str())};
}

std::span<const top_order> top_orders() {
  return kOrders;
}

top_sample top_take(const client_options& options, const top_choice& choice,
                    const top_sample& before, const call_idle* idle, int* asking) {
  top_sample sample;
  size_t answering = 0;
  for (const int bss : choice.bsses) {
    *asking = bss;
    prepared_call prepared = {&stations_procedure(), {}};
    xdr_put_word(prepared.arguments, static_cast<uint32_t>(bss));
    decoded_reply reply;
    sample.failure = session_try(options, prepared, reply, idle);
    if (!sample.failure.line.empty()) return sample;
    if (reply.code >= 0) {  // otherwise the driver does not have the BSS up
      ++answering;
      take_stations(sample, bss, reply.data, before);
    }
    // Even if each call is quick, all of them together take time.
    sample.failure.given_up = idle != nullptr && !idle->go_on(idle->context);
    if (sample.failure.given_up) return sample;
  }
  if (answering == 0) sample.failure = no_radio(choice.bsses.size());
  std::sort(sample.stations.begin(), sample.stations.end(),
            [&](const top_station& a, const top_station& b) {
              const double value_a = choice.order->value(a), value_b = choice.order->value(b);
              if (value_a != value_b) return value_a > value_b;
              return a.bss != b.bss ? a.bss < b.bss : address(a) < address(b);
            });
  sample.taken = moment_now();
  sample.stamp = moment_stamp();
  return sample;
}

std::string top_json(const top_sample& sample) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  const auto rate = [](double value) {
    return value < 0 ? nlohmann::ordered_json() : nlohmann::ordered_json(std::round(value));
  };
  for (const top_station& station : sample.stations) {
    nlohmann::ordered_json object = {{"bss", station.bss}};
    object.update(json_fields(stations_rows().fields, station.record));
    object["bytes_sent_per_second"] = rate(station.sent_rate);
    object["bytes_received_per_second"] = rate(station.received_rate);
    list.push_back(object);
  }
  return json_line({{"time", sample.stamp}, {"stations", list}});
}
