#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "companions/companion.h"
#include "companions/companion_data.h"
#include "companions/programs.h"

static constexpr const char* kDirectory = "/var/run/radstat";
static constexpr const char* kRadstatRecord = "/run/gwbox/radstat.jsonl";
static constexpr double kRadstatLateSeconds = 3;
static constexpr size_t kRadstatShortSize = 40;
static constexpr int kRssiEntries = 37;

struct radstat_reply {
  int32_t cst, ap_act, busy;               // percent
  int32_t nf_max, nf_min, nf_med, nf_avg;  // dBm
  int32_t retry;                           // percent
  int32_t tx, rx;                          // packets
  int32_t rssi[kRssiEntries];
  int32_t unused;
};
static_assert(sizeof(radstat_reply) == 192 && offsetof(radstat_reply, rssi) == 40);

struct radstat_options {
  std::string interface, r, m, upper_r;
};

static radstat_options read_options(int argc, char** argv) {
  radstat_options options;
  for (int option; (option = getopt(argc, argv, "i:r:m:R:")) != -1;) {
    if (option == 'i') options.interface = optarg;
    if (option == 'r') options.r = optarg;
    if (option == 'm') options.m = optarg;
    if (option == 'R') options.upper_r = optarg;
  }
  return options;
}

// A value that swings around MIDDLE by AROUND, once a minute.
static double swing(double seconds, double middle, double around) {
  return middle + around * sin(seconds * 2 * M_PI / 60);
}

static int32_t counter(const nlohmann::json& data, const char* name, double seconds,
                       double usual_rate) {
  std::string rate_name = std::string(name) + "_rate";
  double start = companion_number(data, name, 1000);
  bool told = data.contains(name);
  double rate = companion_number(data, rate_name.c_str(), told ? 0 : usual_rate);
  return static_cast<int32_t>(static_cast<int64_t>(start + rate * seconds));
}

static void fill_rssi(const nlohmann::json& data, double seconds, radstat_reply& reply) {
  auto told = data.find("rssi");
  for (size_t i = 0; i < kRssiEntries; ++i) {
    int usual = -95 + static_cast<int>(i) + static_cast<int>(swing(seconds, 0, 2));
    bool has_table = told != data.end() && told->is_array();
    bool has_entry = has_table && i < told->size() && (*told)[i].is_number();
    reply.rssi[i] = has_entry ? (*told)[i].get<int32_t>() : has_table ? 0 : usual;
  }
}

static radstat_reply make_reply(const nlohmann::json& data) {
  double seconds = companion_box_time();
  auto number = [&](const char* name, double usual) {
    return static_cast<int32_t>(companion_number(data, name, usual));
  };
  radstat_reply reply = {};
  reply.cst = number("cst", swing(seconds, 35, 10));
  reply.ap_act = number("ap_act", swing(seconds, 12, 5));
  reply.busy = number("busy", swing(seconds, 30, 10));
  reply.nf_max = number("nf_max", swing(seconds, -85, 1));
  reply.nf_min = number("nf_min", swing(seconds, -95, 1));
  reply.nf_med = number("nf_med", swing(seconds, -91, 1));
  reply.nf_avg = number("nf_avg", swing(seconds, -90, 1));
  reply.retry = number("retry", swing(seconds, 5, 2));
  reply.tx = counter(data, "tx", seconds, 250);
  reply.rx = counter(data, "rx", seconds, 400);
  fill_rssi(data, seconds, reply);
  return reply;
}

static void serve(companion& self, int fd, const companion_datagram& asked,
                  const std::string& interface) {
  if (asked.bytes.substr(0, asked.bytes.find('\0')) != "result") return;
  nlohmann::json all = companion_data("radstat"), data = nlohmann::json::object();
  if (all.contains(interface) && all[interface].is_object()) data = all[interface];
  radstat_reply reply = make_reply(data);
  std::string bytes(reinterpret_cast<const char*>(&reply), sizeof reply);
  std::string behaviour = companion_behaviour(data);
  if (behaviour == "silent") return;
  if (behaviour == "zeros") bytes.assign(sizeof reply, '\0');
  if (behaviour == "short") bytes.resize(kRadstatShortSize);
  if (behaviour == "late" && !companion_pause(self, kRadstatLateSeconds)) return;
  companion_answer(fd, asked, bytes);
}

int radstat_main(const std::string& name, int argc, char** argv) {
  radstat_options options = read_options(argc, argv);
  if (options.interface.empty() || options.interface.find('/') != std::string::npos) {
    fprintf(stderr, "usage: %s -i INTERFACE [-r N] [-m N] [-R N]\n", name.c_str());
    return 2;
  }
  companion self = companion_begin({});
  std::string path = std::string(kDirectory) + "/" + options.interface;
  if (mkdir(kDirectory, 0755) < 0 && errno != EEXIST) perror(kDirectory);
  int fd = companion_listen(path.c_str());
  if (fd < 0) return 1;
  companion_record(kRadstatRecord, {{"name", name},
                                    {"interface", options.interface},
                                    {"r", options.r},
                                    {"m", options.m},
                                    {"R", options.upper_r}});
  companion_datagram datagram;
  while (companion_receive(self, fd, datagram))
    serve(self, fd, datagram, options.interface);
  companion_unlisten(path.c_str());
  return 0;
}
