#include "support/wire.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>

std::string xdr_word(uint32_t value) {
  const uint32_t big = htonl(value);
  return std::string(reinterpret_cast<const char*>(&big), sizeof big);
}

std::string xdr_text(const std::string& text) {
  return xdr_word(static_cast<uint32_t>(text.size())) + text + std::string(-text.size() % 4, '\0');
}

uint32_t word_at(const std::string& bytes, size_t offset) {
  uint32_t value = 0;
  if (offset + sizeof value <= bytes.size()) bytes.copy(reinterpret_cast<char*>(&value), 4, offset);
  return ntohl(value);
}

std::string call_message(uint32_t procedure, const std::string& arguments, uint32_t xid,
                         uint32_t program, uint32_t version) {
  const std::string no_credentials = xdr_word(0) + xdr_word(0);
  return xdr_word(xid) + xdr_word(0) + xdr_word(2) + xdr_word(program) + xdr_word(version) +
         xdr_word(procedure) + no_credentials + no_credentials + arguments;
}

static int connected_socket() {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in service = {};
  service.sin_family = AF_INET;
  service.sin_port = htons(60001);
  inet_aton("192.168.254.254", &service.sin_addr);
  connect(sock, reinterpret_cast<sockaddr*>(&service), sizeof service);
  return sock;
}

static bool parse_reply(const std::string& datagram, uint32_t xid, reply_message* reply) {
  if (datagram.size() < 12 || word_at(datagram, 0) != xid || word_at(datagram, 4) != 1)
    return false;
  reply->reply_status = word_at(datagram, 8);
  reply->accept_status = word_at(datagram, 20);
  reply->payload = datagram.size() > 24 ? datagram.substr(24) : "";
  return true;
}

static bool await_reply(int sock, uint32_t xid, reply_message* reply, double seconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  char bytes[65536];
  for (;;) {
    const std::chrono::duration<double, std::milli> left = end - std::chrono::steady_clock::now();
    pollfd waiting = {sock, POLLIN, 0};
    if (left.count() <= 0 || poll(&waiting, 1, static_cast<int>(left.count()) + 1) <= 0)
      return false;
    const ssize_t length = recv(sock, bytes, sizeof bytes, 0);
    if (length < 0) return false;
    if (parse_reply(std::string(bytes, static_cast<size_t>(length)), xid, reply)) return true;
  }
}

bool exchange(const std::string& datagram, uint32_t xid, reply_message* reply, double seconds) {
  const int sock = connected_socket();
  const bool sent = send(sock, datagram.data(), datagram.size(), 0) >= 0;
  const bool answered = sent && await_reply(sock, xid, reply, seconds);
  close(sock);
  return answered;
}

void send_datagram(const std::string& datagram) {
  const int sock = connected_socket();
  EXPECT_EQ(send(sock, datagram.data(), datagram.size(), 0), static_cast<ssize_t>(datagram.size()));
  close(sock);
}

bool call(uint32_t procedure, const std::string& arguments, reply_message* reply, double seconds) {
  static uint32_t xid = 1000;
  ++xid;
  return exchange(call_message(procedure, arguments, xid), xid, reply, seconds);
}

std::string call_for_payload(uint32_t procedure, const std::string& arguments) {
  reply_message reply = {};
  // On a busy machine a reset with traced commands takes seconds.
  EXPECT_TRUE(call(procedure, arguments, &reply, 10)) << "procedure " << procedure;
  EXPECT_EQ(reply.accept_status, kAcceptSuccess) << "procedure " << procedure;
  return reply.payload;
}

int32_t call_for_code(uint32_t procedure, const std::string& arguments) {
  return static_cast<int32_t>(word_at(call_for_payload(procedure, arguments), 0));
}
