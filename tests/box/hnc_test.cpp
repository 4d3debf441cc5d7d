// The home network controller's listener. The layout of its datagrams is written down
// here independently.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cstring>

#include "inside.h"
#include "watch.h"

static const std::string kRecord = "/run/gwbox/hnc.jsonl";

// Type, name, index, value.
static std::string make_request(uint32_t type, const std::string& name, uint32_t index,
                                const std::string& value) {
  std::string bytes(1496, '\0');
  memcpy(&bytes[0], &type, sizeof type);
  bytes.replace(4, name.size(), name);
  memcpy(&bytes[132], &index, sizeof index);
  bytes.replace(136, value.size(), value);
  return bytes;
}

static int connect_listener() {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(4567);
  address.sin_addr.s_addr = inet_addr("192.168.254.254");
  int fd = socket(AF_INET, SOCK_DGRAM, 0);
  EXPECT_EQ(connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  return fd;
}

struct listener {
  int fd;

  std::string get(const std::string& name, uint32_t index = 0) const {
    return ask(fd, make_request(0, name, index, ""));
  }
  std::string value(const std::string& name, uint32_t index = 0) const {
    return get(name, index).c_str();
  }
  int32_t set(const std::string& name, uint32_t index, const std::string& value) const {
    return error(ask(fd, make_request(1, name, index, value)));
  }
  static int32_t error(const std::string& reply) {
    int32_t error = 77;
    EXPECT_EQ(reply.size(), 2860u);
    if (reply.size() == 2860) memcpy(&error, &reply[2856], sizeof error);
    return error;
  }
};

static listener start_listener() {
  EXPECT_EQ(run("hnc-listener </dev/null >/dev/null 2>&1 &").status, 0);
  EXPECT_TRUE(wait_until([] { return run("ss -Huln sport = 4567").output != ""; }));
  return {connect_listener()};
}

TEST(Hnc, KeepsSettings) {
  listener box = start_listener();
  EXPECT_EQ(box.value("TopologyEnable"), "1");
  EXPECT_EQ(box.set("TopologyEnable", 0, "0"), 0);
  EXPECT_EQ(box.value("TopologyEnable"), "0");
  EXPECT_EQ(box.value("ConfigDuration"), "300");
  EXPECT_EQ(box.value("NoSuchKey"), "");
}

TEST(Hnc, RecordsEveryRequestDecoded) {
  listener box = start_listener();
  box.set("ConfigAttempts", 0, "5");
  box.get("HneEntry", 9);
  auto lines = records(kRecord);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0]["type"], "set");
  EXPECT_EQ(lines[0]["name"], "ConfigAttempts");
  EXPECT_EQ(lines[0]["value"], "5");
  EXPECT_EQ(lines[0]["size"], 1496);
  EXPECT_EQ(lines[1]["type"], "get");
  EXPECT_EQ(lines[1]["index"], 9);
  EXPECT_EQ(lines[1]["table_error"], -1);
}

TEST(Hnc, TheTableOfExtenders) {
  listener box = start_listener();
  std::string reply = box.get("HneEntry", 1);
  EXPECT_EQ(listener::error(reply), 0);
  uint32_t index = 0, sync = 0;
  memcpy(&index, &reply[132], sizeof index);
  memcpy(&sync, &reply[132 + 916], sizeof sync);
  EXPECT_EQ(index, 1u);
  EXPECT_EQ(sync, 1700000000u);
  EXPECT_NE(reply.find("Attic"), std::string::npos);
  EXPECT_EQ(box.set("DeviceName", 1, "Cellar"), 0);
  EXPECT_NE(box.get("HneEntry", 1).find("Cellar"), std::string::npos);
  EXPECT_EQ(listener::error(box.get("HneEntry", 2)), -1);
  EXPECT_EQ(box.set("DeviceName", 2, "Nowhere"), -1);
}

TEST(Hnc, TheTableOfModels) {
  listener box = start_listener();
  std::string request = make_request(1, "SuppHneEntry", 7, "");
  int32_t own_index = 3, on_demand = 1;
  memcpy(&request[264], &own_index, sizeof own_index);
  request.replace(264 + 8, 64, std::string(64, 'M'));  // fills its field
  request.replace(264 + 72, 5, "Model");
  memcpy(&request[264 + 1228], &on_demand, sizeof on_demand);
  EXPECT_EQ(listener::error(ask(box.fd, request)), 0);
  EXPECT_EQ(records(kRecord)[0]["record"]["manufacturer"], std::string(64, 'M'));
  EXPECT_EQ(records(kRecord)[0]["record"]["index"], 3);

  std::string reply = box.get("SuppHneEntry", 7);
  EXPECT_EQ(listener::error(reply), 0);
  EXPECT_EQ(reply.substr(1624, 1232), request.substr(264, 1232));
  EXPECT_EQ(box.value("HNEModelname", 7), "Model");
  EXPECT_EQ(box.value("HNEConfigOnDemand", 7), "1");
  EXPECT_EQ(box.set("UpdateFwUrl", 7, "http://x/"), 0);
  EXPECT_EQ(box.get("SuppHneEntry", 7).substr(1624 + 200, 9), "http://x/");
  EXPECT_EQ(box.value("HNENumberOfEntries", 1), "3");
  EXPECT_EQ(box.set("RowStatus", 7, "6"), 0);
  EXPECT_EQ(listener::error(box.get("SuppHneEntry", 7)), -1);
}

TEST(Hnc, TheScenarioCountsAtTheNextRequest) {
  listener box = start_listener();
  EXPECT_EQ(box.set("RRMEnable", 0, "0"), 0);
  tell_companions({{"hnc",
                    {{"settings", {{"ConfigAttempts", "9"}, {"UpdateFwUrl/5", "ftp://y"}}},
                     {"hne", {{{"index", 4}, {"name", "Shed"}}}}}}});
  EXPECT_EQ(box.value("ConfigAttempts"), "9");
  EXPECT_EQ(box.value("UpdateFwUrl", 5), "ftp://y");
  EXPECT_EQ(box.value("RRMEnable"), "0") << "what it was told stays";
  EXPECT_EQ(listener::error(box.get("HneEntry", 1)), -1);
  EXPECT_NE(box.get("HneEntry", 4).find("Shed"), std::string::npos);
  EXPECT_EQ(box.set("ConfigAttempts", 0, "2"), 0);
  EXPECT_EQ(box.value("ConfigAttempts"), "2");
}

TEST(Hnc, Misbehaves) {
  listener box = start_listener();
  auto behave = [](const char* how) { tell_companions({{"hnc", {{"behaviour", how}}}}); };
  behave("short");
  EXPECT_EQ(box.get("Enable").size(), 20u);
  behave("huge");
  EXPECT_GT(box.get("Enable").size(), 2860u);
  behave("unterminated");
  EXPECT_EQ(box.get("Enable"), std::string(2860, 'U'));
  behave("silent");
  EXPECT_EQ(ask(box.fd, make_request(0, "Enable", 0, ""), 0.1), "");
  behave("empty");
  std::string request = make_request(0, "Enable", 0, "");
  ASSERT_EQ(send(box.fd, request.data(), request.size(), 0), 1496);
  char byte;
  EXPECT_EQ(recv(box.fd, &byte, 1, 0), 0);
  behave("late");
  EXPECT_EQ(ask(box.fd, request, 0.5), "");
  EXPECT_EQ(recv(box.fd, &byte, 1, 0), 1);
}

TEST(Hnc, ARequestThatIsCutShortIsNoHarm) {
  listener box = start_listener();
  EXPECT_EQ(ask(box.fd, "x").size(), 2860u);
  EXPECT_EQ(ask(box.fd, std::string(1496, '\xff')).size(), 2860u);
  EXPECT_EQ(box.value("TopologyEnable"), "1");
}
