#include "statistics/radstat_client.h"

#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/trace.h"
#include "statistics/radstat_wire.h"
#include "sys/board.h"
#include "sys/unix_datagram.h"

struct rad_ctrl {
  int sock;
  char local_path[sizeof(sockaddr_un::sun_path)];
};

static constexpr size_t kReplySize = sizeof(radstat_reply);

// The last good reply of each radio. RPC thread only.
static unsigned char buf_reply[2][kReplySize];

static bool connect_client(rad_ctrl* client, const char* daemon_path) {
  if (unix_datagram_bind(client->sock, client->local_path) != 0) {
    trace_rev_error("rad_ctrl_open", "Could not bind - %s \n", strerror(errno));
    unix_datagram_close(client->sock, nullptr);
    return false;
  }
  if (unix_datagram_connect(client->sock, daemon_path) == 0) return true;
  unix_datagram_close(client->sock, client->local_path);
  return false;
}

rad_ctrl* rad_ctrl_open(const char* daemon_path) {
  rad_ctrl* client = static_cast<rad_ctrl*>(calloc(1, sizeof(rad_ctrl)));
  if (client == nullptr) return nullptr;
  snprintf(client->local_path, sizeof client->local_path, "/tmp/rad_ctrl_%d", getpid());
  client->sock = unix_datagram_socket();
  if (client->sock >= 0 && connect_client(client, daemon_path)) return client;
  free(client);
  return nullptr;
}

int rad_ctrl_request(rad_ctrl* client, const void* request, size_t request_len, void* reply,
                     size_t* reply_len) {
  // Drop answers to an earlier client's request: the path is the same.
  unix_datagram_discard(client->sock);
  if (unix_datagram_send(client->sock, request, request_len, kRoomTimeoutMs) != 0) return -1;
  const ssize_t received = unix_datagram_receive(client->sock, reply, *reply_len, kReplyTimeoutMs);
  if (received < 0) return static_cast<int>(received);
  *reply_len = static_cast<size_t>(received);
  return 0;
}

void rad_ctrl_close(rad_ctrl* client) {
  if (client == nullptr) return;
  unix_datagram_close(client->sock, client->local_path);
  free(client);
}

static unsigned char* kept_reply(int radio_index) {
  return buf_reply[radio_index > 7 ? 1 : 0];
}

static void serve_kept(const unsigned char* kept, void* reply, size_t* reply_len) {
  memcpy(reply, kept, kReplySize);
  *reply_len = kReplySize;
}

static int ask(rad_ctrl* client, const void* request, size_t request_len, unsigned char* kept,
               void* reply, size_t* reply_len) {
  *reply_len = kReplySize;
  const int result = rad_ctrl_request(client, request, request_len, reply, reply_len);
  if (result != 0) return result;
  const auto* bytes = static_cast<const unsigned char*>(reply);
  const bool nothing_new =
      std::all_of(bytes, bytes + *reply_len, [](int byte) { return byte == 0; });
  if (nothing_new)
    serve_kept(kept, reply, reply_len);
  else
    memcpy(kept, reply, *reply_len);
  return 0;
}

int rad_ctrl_request_buffered(int radio_index, const void* request, size_t request_len, void* reply,
                              size_t* reply_len) {
  char path[64];
  snprintf(path, sizeof path, "/var/run/radstat/%s", bss_interface(radio_index).text);
  unsigned char* kept = kept_reply(radio_index);
  rad_ctrl* client = rad_ctrl_open(path);
  if (client == nullptr) {
    REV_ERROR("Could not connect\n");
    serve_kept(kept, reply, reply_len);
    return -1;
  }
  const int result = ask(client, request, request_len, kept, reply, reply_len);
  rad_ctrl_close(client);
  return result;
}

void rad_ctrl_forget(int radio_index) {
  memset(kept_reply(radio_index), 0xFF, kReplySize);
}
