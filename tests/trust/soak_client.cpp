#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "soak.h"
#include "support/wire.h"
#include "trust/profile_file.h"

// A client: it sends calls and receives their replies in the same order.

// The longest that a call may wait: for the calls before it, whose controller or
// companion does not answer, and for a reset that waits for a load.
static constexpr double kLongest = 30;

std::map<std::string, long_service> long_services;

double seconds_now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Each client has a BSS whose name no other client sets; never the first of a band.
static uint32_t own_bss(const soak_client& client) {
  return client.number < 7 ? client.number + 2 : client.number + 3;
}

static std::string own_ssid(const soak_client& client) {
  const uint32_t bss = own_bss(client);
  return bss <= 8 ? value_in(locked_profile(kProfile24), "SSID" + std::to_string(bss))
                  : value_in(locked_profile(kProfile5), "SSID" + std::to_string(bss - 8));
}

static void check_ssid(const soak_client& client) {
  if (client.ssid.empty()) return;
  const std::string there = own_ssid(client);
  if (there != client.ssid)
    finding("client %u: the profile has SSID \"%s\", \"%s\" was answered as written", client.number,
            there.c_str(), client.ssid.c_str());
}

soak_client make_client(uint32_t number, size_t window, unsigned seed) {
  soak_client client = {};
  client.number = number;
  client.window = window;
  client.random.seed(seed * 1000 + number);
  client.next_xid = (number + 1) << 24;
  client.sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in service = {};
  service.sin_family = AF_INET;
  service.sin_port = htons(60001);
  inet_aton("192.168.254.254", &service.sin_addr);
  if (connect(client.sock, reinterpret_cast<sockaddr*>(&service), sizeof service) != 0)
    finding("client %u cannot have a socket", number);
  return client;
}

static void send_call(soak_client* client, const soak_call& call, const std::string& ssid) {
  const uint32_t xid = client->next_xid++;
  const std::string message = message_of(call, xid);
  if (call.answer != expected::kSilence)
    client->waiting.push_back({xid, &call, seconds_now(), ssid});
  if (send(client->sock, message.data(), message.size(), 0) != static_cast<ssize_t>(message.size()))
    finding("client %u: %zu bytes could not be sent: %m", client->number, message.size());
}

static bool sets_ssid(const soak_client& client) {
  for (const soak_waiting& one : client.waiting) {
    if (!one.ssid.empty()) return true;
  }
  return false;
}

// A new name for the client's own BSS. Only one is under way at a time, so that it can be
// checked.
static void send_ssid(soak_client* client) {
  check_ssid(*client);
  const std::string ssid =
      "client " + std::to_string(client->number) + " " + std::to_string(client->next_xid);
  static thread_local soak_call call;
  call = call_of("WLAN_CHECK_THREAD_QUEUE");
  for (const procedure_row& row : table_procedures()) {
    if (row.number == kSetSsid) call.row = &row;
  }
  call.kind = call_kind::kSetter;
  call.procedure = kSetSsid;
  call.arguments = xdr_word(own_bss(*client)) + xdr_text(ssid);
  send_call(client, call, ssid);
}

static void send_drawn(soak_client* client, int64_t n, bool controller) {
  const soak_call& call = draw_call(n, client->random, controller);
  if (call.procedure != kSetSsid || call.answer != expected::kResult) {
    send_call(client, call, "");
  } else if (!sets_ssid(*client)) {
    send_ssid(client);
  } else {
    send_call(client, call_of("WLAN_CHECK_THREAD_QUEUE"), "");
  }
}

// True when a datagram was received.
static bool receive(soak_client* client, double seconds, std::string* datagram) {
  static thread_local char bytes[65536];
  pollfd waiting = {client->sock, POLLIN, 0};
  if (poll(&waiting, 1, static_cast<int>(seconds * 1000)) <= 0) return false;
  const ssize_t length = recv(client->sock, bytes, sizeof bytes, 0);
  if (length < 0) {
    // The service is gone, and every outstanding call is lost.
    finding("client %u: no service: %m", client->number);
    return false;
  }
  datagram->assign(bytes, static_cast<size_t>(length));
  return true;
}

static const char* name_of(const soak_call& call) {
  return call.row != nullptr ? call.row->name : "(no procedure)";
}

// Which outstanding call the datagram answers. A reply that comes twice or out of order
// is a finding.
static size_t answered(const soak_client& client, const std::string& datagram) {
  const uint32_t xid = word_at(datagram, 0);
  size_t i = 0;
  while (i < client.waiting.size() && client.waiting[i].xid != xid)
    ++i;
  if (i == client.waiting.size())
    finding("client %u: %zu bytes with xid %08x, which waits for no reply", client.number,
            datagram.size(), xid);
  else if (i > 0)
    finding("client %u: xid %08x overtook %08x", client.number, xid, client.waiting[0].xid);
  return i;
}

// Roughly how long the daemon took for this call alone. Calls are served one by one, so
// it counts from the last reply to any client or, if later, from the sending.
static void note_service(const soak_waiting& call) {
  static constexpr double kLong = 0.9;
  static std::mutex mutex;
  static double last_reply = 0;
  const std::lock_guard<std::mutex> guard(mutex);
  const double now = seconds_now();
  const double alone = now - std::max(last_reply, call.sent);
  last_reply = now;
  if (alone < kLong) return;
  long_service& one = long_services[name_of(*call.call)];
  ++one.times;
  one.longest = std::max(one.longest, alone);
}

static void note_reply(soak_client* client, const soak_waiting& call, const std::string& reply) {
  const double seconds = seconds_now() - call.sent;
  note_service(call);
  const std::string wrong = objection(*call.call, call.xid, reply);
  if (!wrong.empty())
    finding("client %u: the reply to %s, xid %08x, %zu bytes, %s", client->number,
            name_of(*call.call), call.xid, reply.size(), wrong.c_str());
  client->times[static_cast<int>(call.call->kind)].push_back(static_cast<float>(seconds));
  ++client->replies;
  if (call.ssid.empty()) return;
  if (word_at(reply, 24) == 0) client->ssid = call.ssid;
  check_ssid(*client);
}

static void take_reply(soak_client* client) {
  std::string reply;
  while (receive(client, kLongest, &reply)) {
    const size_t i = answered(*client, reply);
    if (i == client->waiting.size()) continue;
    const soak_waiting call = client->waiting[i];
    client->waiting.erase(client->waiting.begin() + static_cast<ptrdiff_t>(i));
    note_reply(client, call, reply);
    return;
  }
  const soak_waiting lost = client->waiting.front();
  client->waiting.erase(client->waiting.begin());
  finding("client %u: no reply to %s, xid %08x", client->number, name_of(*lost.call), lost.xid);
}

void run_client(soak_client* client, const std::function<int64_t()>& take,
                const std::function<bool()>& controller_free) {
  for (;;) {
    const int64_t n = take();
    if (n == kNoMore) break;
    if (n == kNotYet && client->waiting.empty())
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    if (n >= 0) send_drawn(client, n, controller_free());
    // With nothing to send now, wait for all outstanding replies.
    const size_t room = n >= 0 ? client->window : 1;
    while (client->waiting.size() >= room)
      take_reply(client);
  }
  while (!client->waiting.empty())
    take_reply(client);
  check_ssid(*client);
}

void call_and_check(soak_client* client, const soak_call& call) {
  send_call(client, call, "");
  while (!client->waiting.empty())
    take_reply(client);
}

void expect_silence(soak_client* client) {
  std::string datagram;
  while (receive(client, 0.02, &datagram))
    finding("client %u: %zu bytes with xid %08x that nobody waits for", client->number,
            datagram.size(), word_at(datagram, 0));
}
