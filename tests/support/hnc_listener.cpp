#include "support/hnc_listener.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <mutex>
#include <optional>
#include <thread>

static constexpr size_t kRequestSize = 1496;
static constexpr size_t kReplySize = 2860;

static int listener_socket = -1;
// Shared by the test and the listener's thread. Never destroyed, because the thread outlives
// the test.
static std::mutex mutex;
static auto& behaviour = *new std::function<std::optional<std::string>(const std::string&)>;
static auto& requests = *new std::vector<std::string>;
static auto& ports = *new std::vector<uint16_t>;

static sockaddr_in internal_link(uint16_t port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  inet_aton("192.168.254.254", &address.sin_addr);
  return address;
}

static void serve() {
  std::string bytes(65536, '\0');
  for (;;) {
    sockaddr_in peer = {};
    socklen_t size = sizeof peer;
    const ssize_t length = recvfrom(listener_socket, bytes.data(), bytes.size(), 0,
                                    reinterpret_cast<sockaddr*>(&peer), &size);
    if (length < 0) return;
    const std::lock_guard<std::mutex> guard(mutex);
    requests.push_back(bytes.substr(0, static_cast<size_t>(length)));
    ports.push_back(ntohs(peer.sin_port));
    const std::optional<std::string> answer = behaviour(requests.back());
    if (!answer) continue;
    sendto(listener_socket, answer->data(), answer->size(), 0, reinterpret_cast<sockaddr*>(&peer),
           size);
  }
}

static void behave(const std::function<std::optional<std::string>(const std::string&)>& next) {
  const std::lock_guard<std::mutex> guard(mutex);
  behaviour = next;
}

void start_listener() {
  listener_socket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = internal_link(4567);
  ASSERT_EQ(bind(listener_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  listener_answers(std::string(kReplySize, '\0'));
  std::thread(serve).detach();
}

void listener_answers(const std::string& bytes) {
  behave([bytes](const std::string&) { return bytes; });
}

void listener_asks(const std::function<std::string(const std::string&)>& answer) {
  behave(answer);
}

void listener_is_silent() {
  behave([](const std::string&) { return std::nullopt; });
}

std::vector<std::string> listener_requests() {
  const std::lock_guard<std::mutex> guard(mutex);
  return requests;
}

std::vector<uint16_t> listener_ports() {
  const std::lock_guard<std::mutex> guard(mutex);
  return ports;
}

std::string last_listener_request() {
  const auto all = listener_requests();
  return all.empty() ? "(none)" : all.back();
}

void listener_sends(uint16_t port, const std::string& bytes) {
  const sockaddr_in client = internal_link(port);
  EXPECT_EQ(sendto(listener_socket, bytes.data(), bytes.size(), 0,
                   reinterpret_cast<const sockaddr*>(&client), sizeof client),
            static_cast<ssize_t>(bytes.size()));
}

std::string little_endian(uint32_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i)
    bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

std::string hnc_request_bytes(uint32_t type, const std::string& key, uint32_t index,
                              const std::string& value) {
  std::string bytes(kRequestSize, '\0');
  bytes.replace(0, 4, little_endian(type));
  bytes.replace(4, key.size(), key);
  bytes.replace(132, 4, little_endian(index));
  bytes.replace(136, value.size(), value);
  return bytes;
}

std::string hnc_reply_bytes(const std::string& value, int32_t table_error) {
  std::string bytes(kReplySize, '\0');
  bytes.replace(0, value.size(), value);
  bytes.replace(2856, 4, little_endian(static_cast<uint32_t>(table_error)));
  return bytes;
}
