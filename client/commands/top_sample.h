// One sample for "wificonf top": the stations of the BSSs at one time.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "commands/session.h"
#include "values/payload.h"

struct top_station {
  int bss;             // 1 to 16
  std::string record;  // its row in the answer
  double taken;        // time of the answer, as moment_now()
  // Bytes per second since the previous sample; negative: unknown.
  double sent_rate, received_rate;
};

struct top_order {
  const char* name;
  double (*value)(const top_station& station);  // sorts highest first
};

struct top_choice {
  std::vector<int> bsses;  // to ask
  const top_order* order;
};

struct top_sample {
  std::vector<top_station> stations;
  double taken = 0;  // when it was completed; 0: never
  std::string stamp;
  failure_report failure;  // why it is incomplete, or why no BSS is up
};

// "busy" (the default), "bss", "rssi", ...
std::span<const top_order> top_orders();

// Asks one BSS after the other; `*asking` is the current one. Rates are those since `before`.
top_sample top_take(const client_options& options, const top_choice& choice,
                    const top_sample& before, const call_idle* idle, int* asking);

std::string top_json(const top_sample& sample);
