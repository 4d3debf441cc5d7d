#include <cstdint>
#include <cstring>

#include "client/base/text.h"
#include "companions/companion.h"
#include "companions/programs.h"

static constexpr const char* kDcsPath = "/var/run/dcsD";
static constexpr const char* kDcsRecord = "/run/gwbox/dcs.jsonl";

// What dcs is sent: a setting as a text, or its log level.
struct dcs_message {
  uint32_t type;
  uint32_t reserved;
  uint32_t length;  // of the text, its terminator included
  char payload[256];
};
static_assert(sizeof(dcs_message) == 268);

static constexpr uint32_t kTypeText = 1, kTypeLevel = 3;

// A setting may also arrive as bare text, without the header.
static void decode(const std::string& bytes, nlohmann::ordered_json& line) {
  dcs_message message = {};
  memcpy(&message, bytes.data(), bytes.size() < sizeof message ? bytes.size() : sizeof message);
  if (message.type == kTypeText) {
    line["type"] = message.type;
    line["length"] = message.length;
    line["text"] = std::string(message.payload, strnlen(message.payload, sizeof message.payload));
  } else if (message.type == kTypeLevel) {
    int32_t level;
    memcpy(&level, message.payload, sizeof level);
    line["type"] = message.type;
    line["length"] = message.length;
    line["level"] = level;
  } else {
    line["bare_text"] = std::string(bytes.data(), strnlen(bytes.data(), bytes.size()));
  }
}

int dcs_main() {
  companion self = companion_begin({});
  int fd = companion_listen(kDcsPath);
  if (fd < 0) return 1;
  companion_datagram datagram;
  while (companion_receive(self, fd, datagram)) {
    nlohmann::ordered_json line = {{"size", datagram.bytes.size()}};
    decode(datagram.bytes, line);
    line["hex"] = text_hex(datagram.bytes);
    companion_record(kDcsRecord, line);
  }
  companion_unlisten(kDcsPath);
  return 0;
}
