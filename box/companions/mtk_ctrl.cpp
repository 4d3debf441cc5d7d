#include <time.h>
#include <cstdint>
#include <cstring>

#include "companions/companion.h"
#include "companions/companion_data.h"
#include "companions/programs.h"

static constexpr const char* kCtrlPath = "/var/run/mtk_ctrl_path";
static constexpr const char* kCtrlRecord = "/run/gwbox/mtk_ctrl.jsonl";
static constexpr double kCtrlLateSeconds = 3;
static constexpr size_t kCtrlShortSize = 40;

struct ctrl_request {
  uint32_t command;
  uint32_t reserved[2];
  uint32_t radio;  // number of its first interface
};
static_assert(sizeof(ctrl_request) == 16);

static constexpr uint32_t kGetEvents = 1;
static constexpr size_t kEventsMax = 32;

struct ctrl_event {
  uint8_t type;
  int8_t code;
  uint8_t mac[6];
  uint32_t time;  // seconds since the epoch
};
static_assert(sizeof(ctrl_event) == 12);

struct ctrl_reply {
  uint32_t status;
  uint32_t reserved[2];
  ctrl_event events[kEventsMax];
  uint8_t count;  // includes the events that did not fit
  uint8_t padding[7];
};
static_assert(sizeof(ctrl_reply) == 404 && offsetof(ctrl_reply, count) == 396);

static ctrl_event make_event(const nlohmann::json& data) {
  ctrl_event event = {};
  event.type = static_cast<uint8_t>(companion_number(data, "type", 0));
  event.code = static_cast<int8_t>(companion_number(data, "code", 0));
  memcpy(event.mac, companion_mac(companion_text(data, "mac", "")).data(), sizeof event.mac);
  double age = companion_number(data, "age", 0) / companion_speed();
  event.time = static_cast<uint32_t>(static_cast<double>(time(nullptr)) - age);
  return event;
}

static std::string make_reply(const nlohmann::json& data, uint32_t radio) {
  ctrl_reply reply = {};
  reply.status = static_cast<uint32_t>(companion_number(data, "status", 0));
  auto events = data.find("events");
  if (events != data.end() && events->is_array()) {
    for (const auto& event : *events) {
      if (companion_number(event, "radio", radio) != radio || reply.count == UINT8_MAX) continue;
      if (reply.count < kEventsMax) reply.events[reply.count] = make_event(event);
      ++reply.count;
    }
  }
  return std::string(reinterpret_cast<const char*>(&reply), sizeof reply);
}

static void serve(companion& self, int fd, const companion_datagram& asked) {
  ctrl_request request = {};
  size_t size = asked.bytes.size();
  memcpy(&request, asked.bytes.data(), size < sizeof request ? size : sizeof request);
  companion_record(kCtrlRecord,
                   {{"size", size}, {"command", request.command}, {"radio", request.radio}});
  if (size < sizeof request || request.command != kGetEvents) return;
  nlohmann::json data = companion_data("mtk_ctrl");
  std::string behaviour = companion_behaviour(data), reply = make_reply(data, request.radio);
  if (behaviour == "silent") return;
  if (behaviour == "short") reply.resize(kCtrlShortSize);
  if (behaviour == "late" && !companion_pause(self, kCtrlLateSeconds)) return;
  companion_answer(fd, asked, reply);
}

int mtk_ctrl_main() {
  companion self = companion_begin({});
  int fd = companion_listen(kCtrlPath);
  if (fd < 0) return 1;
  companion_datagram datagram;
  while (companion_receive(self, fd, datagram))
    serve(self, fd, datagram);
  companion_unlisten(kCtrlPath);
  return 0;
}
