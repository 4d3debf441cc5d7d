#include "call.h"

#include <arpa/inet.h>
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <time.h>

static const char kAddress[] = "192.168.254.254";

// xid, direction, RPC version, program, version, procedure, no credentials.
enum { kHeaderWords = 10, kReplyHeaderWords = 6 };

static void fail(const char* what, const char* which) {
  fprintf(stderr, "bench_client: %s: %s\n", what, which);
  exit(1);
}

static void put_header(uint8_t* at, uint32_t program, uint32_t procedure) {
  const uint32_t words[kHeaderWords] = {0, 0, htonl(2), htonl(program), htonl(1), htonl(procedure)};
  memcpy(at, words, sizeof words);
}

// Adds one encoded argument and returns the text after it.
static const char* add_variant(struct side* side, uint32_t program, uint32_t procedure,
                               const char* hex) {
  const int number = side->variants++;
  if (number == kVariantsMax) fail("too many arguments", hex);
  uint8_t* datagram = side->datagram[number];
  put_header(datagram, program, procedure);
  size_t length = kHeaderWords * sizeof(uint32_t);
  unsigned byte;
  for (; sscanf(hex, "%2x", &byte) == 1 && length < kDatagramMax; hex += 2)
    datagram[length++] = (uint8_t)byte;
  side->length[number] = length;
  return hex;
}

static int connected_socket(int port) {
  struct sockaddr_in at = {.sin_family = AF_INET, .sin_port = htons((uint16_t)port)};
  inet_aton(kAddress, &at.sin_addr);
  const struct timeval patience = {.tv_sec = 10};
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  setsockopt(sock, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  if (sock < 0 || connect(sock, (struct sockaddr*)&at, sizeof at) != 0) fail("connect", kAddress);
  return sock;
}

void side_open(struct side* side, const char* text) {
  int port = 0;
  unsigned program = 0;
  unsigned procedure = 0;
  int taken = 0;
  if (sscanf(text, "%d:%i:%i:%n", &port, (int*)&program, (int*)&procedure, &taken) != 3) {
    fail("no side", text);
  }
  memset(side, 0, sizeof *side);
  side->sock = connected_socket(port);
  const char* rest = text + taken;
  do {
    rest = add_variant(side, program, procedure, rest);
  } while (*rest++ == ',');
}

bool side_send(struct side* side) {
  uint8_t* datagram = side->datagram[side->next];
  const uint32_t xid = htonl(++side->xid);
  memcpy(datagram, &xid, sizeof xid);
  const size_t length = side->length[side->next];
  side->next = (side->next + 1) % side->variants;
  return send(side->sock, datagram, length, 0) == (ssize_t)length;
}

// Expects an accepted reply with an empty verifier, success, and 0 as the first result word.
static void check_reply(const uint32_t* reply, size_t words) {
  const uint32_t wanted[kReplyHeaderWords] = {reply[0], htonl(1)};
  if (words < kReplyHeaderWords || memcmp(reply, wanted, sizeof wanted) != 0) {
    fail("reply", "no success");
  }
  if (words > kReplyHeaderWords && reply[kReplyHeaderWords] != 0) fail("reply", "status not 0");
}

bool side_receive(struct side* side, int milliseconds) {
  uint32_t reply[16384 / 4];
  for (;;) {
    struct pollfd wait = {.fd = side->sock, .events = POLLIN};
    if (milliseconds >= 0 && poll(&wait, 1, milliseconds) <= 0) return false;
    const ssize_t length = recv(side->sock, reply, sizeof reply, 0);
    if (length < 0) return false;
    if (length >= 4 && reply[0] == htonl(side->xid)) {
      check_reply(reply, (size_t)length / 4);
      return true;
    }
  }
}

void side_call(struct side* side) {
  if (!side_send(side)) fail("call", "nobody listens");
  if (!side_receive(side, -1)) fail("call", "no answer");
}

double microseconds(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return (double)now.tv_sec * 1e6 + (double)now.tv_nsec / 1e3;
}
