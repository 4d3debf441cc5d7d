#include <arpa/inet.h>
#include <unistd.h>
#include <cstdio>
#include <cstring>

#include "companions/companion.h"
#include "companions/companion_data.h"
#include "companions/hnc_store.h"
#include "companions/programs.h"
#include "host/interfaces.h"

static constexpr const char* kListenerRecord = "/run/gwbox/hnc.jsonl";
static constexpr uint16_t kPort = 4567;
static constexpr double kListenerLateSeconds = 1.5;
static constexpr size_t kListenerShortSize = 20, kHugeSize = 8000;

static int listen_there() {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(kPort);
  inet_pton(AF_INET, kNetLanAddress, &address.sin_addr);
  int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) return fd;
  perror("hnc-listener: port 4567");
  if (fd >= 0) close(fd);
  return -1;
}

static nlohmann::ordered_json supported_fields(const hnc_supported& row) {
  return {{"index", row.index},
          {"row_status", row.row_status},
          {"manufacturer", hnc_text(row.manufacturer)},
          {"model_name", hnc_text(row.model_name)},
          {"model_number", hnc_text(row.model_number)},
          {"firmware_url", hnc_text(row.firmware_url)},
          {"firmware_file_name", hnc_text(row.firmware_file_name)},
          {"firmware_user_name", hnc_text(row.firmware_user_name)},
          {"firmware_password", hnc_text(row.firmware_password)},
          {"update_time", row.update_time},
          {"config_on_demand", row.config_on_demand}};
}

static void record(size_t size, const hnc_request& request, const hnc_reply& reply) {
  bool is_set = request.type == kHncSet;
  std::string name = hnc_text(request.name);
  nlohmann::ordered_json line = {{"size", size},
                                 {"type", is_set ? "set" : "get"},
                                 {"name", name},
                                 {"index", request.index},
                                 {"value", hnc_text(request.value)}};
  if (request.type != kHncGet && !is_set) line["type"] = request.type;
  if (is_set && name == "SuppHneEntry") line["record"] = supported_fields(request.supported);
  if (!is_set) line["answer"] = hnc_text(reply.value);
  line["table_error"] = reply.table_error;
  companion_record(kListenerRecord, line);
}

// Changes BYTES to what a listener that behaves like that would send; false for no answer.
static bool shape_answer(const std::string& behaviour, companion& self, std::string& bytes) {
  if (behaviour == "silent") return false;
  if (behaviour == "empty") bytes.clear();
  if (behaviour == "short") bytes.resize(kListenerShortSize);
  if (behaviour == "huge") bytes.resize(kHugeSize, 'H');
  if (behaviour == "unterminated") bytes.assign(bytes.size(), 'U');
  return behaviour != "late" || companion_pause(self, kListenerLateSeconds);
}

static void serve(companion& self, int fd, hnc_store& store, const companion_datagram& asked) {
  nlohmann::json data = companion_data("hnc");
  hnc_store_update(store, data);
  hnc_request request = {};
  size_t size = asked.bytes.size();
  memcpy(&request, asked.bytes.data(), size < sizeof request ? size : sizeof request);
  hnc_reply reply;
  hnc_store_serve(store, request, reply);
  record(size, request, reply);
  std::string bytes(reinterpret_cast<const char*>(&reply), sizeof reply);
  if (shape_answer(companion_behaviour(data), self, bytes)) companion_answer(fd, asked, bytes);
}

int hnc_listener_main() {
  companion self = companion_begin({});
  int fd = listen_there();
  if (fd < 0) return 1;
  hnc_store store;
  hnc_store_init(store);
  companion_ready();
  companion_datagram datagram;
  while (companion_receive(self, fd, datagram))
    serve(self, fd, store, datagram);
  return 0;
}
