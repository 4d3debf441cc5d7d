#include "daemon/transport.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <rpc/svc_dg.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <iterator>
#include <string>

#include "rpc/dispatch.h"
#include "rpc/wire_support.h"
#include "unit_support.h"

namespace {

// A bounded UDP transport and a client socket connected to it.
struct connection {
  SVCXPRT* transport;
  int client;
};

// What happened to a datagram.
struct outcome {
  bool served = false;   // it reached the service routine
  bool decoded = false;  // its argument was decoded too
  std::string ssid;      // "(null)" when none was decoded
};

}  // namespace

static outcome last;

static constexpr size_t kBigReply = 8000;
static constexpr uint32_t kAnswerNothing = 22;
static constexpr uint32_t kAnswerBig = 23;

template <typename T>
static xdrproc_t untyped(bool_t (*filter)(XDR*, T*)) {
  return reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(filter));
}

// The service routine: notes what it can decode.
static void serve(svc_req* request, SVCXPRT* transport) {
  wlan_set_ssid_1_argument argument = {};
  last.served = true;
  last.decoded = svc_getargs(transport, untyped(xdr_wlan_set_ssid_1_argument), &argument);
  last.ssid = argument.ssid != nullptr ? argument.ssid : "(null)";
  released(xdr_wlan_set_ssid_1_argument, &argument);
  if (request->rq_proc != kAnswerBig) return;
  std::string image(kBigReply, 'i');
  wlan_config_result_data_t result = {};
  result.return_data.return_data_val = image.data();
  result.return_data.return_data_len = kBigReply;
  EXPECT_TRUE(svc_sendreply(transport, untyped(xdr_wlan_config_result_data_t), &result));
}

static int loopback_socket() {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(bind(sock, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  return sock;
}

static connection make_connection() {
  const int server = loopback_socket();
  sockaddr_in address = {};
  socklen_t length = sizeof address;
  getsockname(server, reinterpret_cast<sockaddr*>(&address), &length);
  const int client = loopback_socket();
  EXPECT_EQ(connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  SVCXPRT* transport = svcudp_create(server);
  EXPECT_NE(transport, nullptr);
  bound_transport(transport);
  // With protocol 0 the portmapper is not told.
  EXPECT_TRUE(svc_register(transport, kProgram, kVersion, serve, 0));
  return {transport, client};
}

static void cut_connection(const connection& ends) {
  svc_unregister(kProgram, kVersion);
  svc_destroy(ends.transport);
  close(ends.client);
}

static std::string header(uint32_t procedure, uint32_t id = 7) {
  return word(id) + word(0) + word(2) + word(kProgram) + word(kVersion) + word(procedure) +
         zeros(4);
}

static outcome take(const connection& ends, const std::string& datagram) {
  last = {};
  EXPECT_EQ(send(ends.client, datagram.data(), datagram.size(), 0),
            static_cast<ssize_t>(datagram.size()));
  svc_getreq_common(ends.transport->xp_fd);
  return last;
}

TEST(Transport, WholeCallIsTaken) {
  const connection ends = make_connection();
  const outcome seen = take(ends, header(kAnswerNothing) + word(3) + text_item("Living room"));
  EXPECT_TRUE(seen.served);
  EXPECT_TRUE(seen.decoded);
  EXPECT_EQ(seen.ssid, "Living room");
  cut_connection(ends);
}

TEST(Transport, CutArgumentIsNotCompletedFromAnEarlierCall) {
  const connection ends = make_connection();
  const std::string secret =
      header(kAnswerNothing) + word(3) + text_item("a secret of another caller");
  for (size_t length = 40; length < secret.size(); ++length) {
    EXPECT_TRUE(take(ends, secret).decoded);
    const outcome seen = take(ends, secret.substr(0, length));
    EXPECT_TRUE(seen.served) << length;
    EXPECT_FALSE(seen.decoded) << length;
    EXPECT_EQ(seen.ssid, "(null)") << length;
  }
  cut_connection(ends);
}

TEST(Transport, CallCutWithinItsHeaderIsDropped) {
  const connection ends = make_connection();
  const std::string whole = header(kAnswerNothing);
  for (size_t length = 0; length < whole.size(); ++length) {
    EXPECT_TRUE(take(ends, whole + word(3) + text_item("x")).decoded);
    EXPECT_FALSE(take(ends, whole.substr(0, length)).served) << length;
  }
  cut_connection(ends);
}

TEST(Transport, HeaderThatAnnouncesMoreCredentialsThanItHasIsDropped) {
  const connection ends = make_connection();
  const std::string plain = header(kAnswerNothing);
  // If its remains stayed in the buffer, they would complete the next datagram.
  EXPECT_TRUE(take(ends, plain + word(3) + text_item("x") + zeros(100)).decoded);
  const std::string greedy = plain.substr(0, 24) + word(AUTH_NONE) + word(200) + zeros(2);
  EXPECT_FALSE(take(ends, greedy).served);
  cut_connection(ends);
}

// A null call whose credential and verifier both have this body.
static std::string null_call(uint32_t credential, uint32_t verifier, const std::string& body) {
  return header(NULLPROC).substr(0, 24) + word(credential) + text_item(body) + word(verifier) +
         text_item(body);
}

static std::string reply_at(const connection& ends) {
  std::string reply(1000, '\0');
  const ssize_t got = recv(ends.client, reply.data(), reply.size(), MSG_DONTWAIT);
  reply.resize(got > 0 ? static_cast<size_t>(got) : 0);
  return reply;
}

TEST(Transport, CredentialsOfOtherFlavorsAreRejected) {
  const connection ends = make_connection();
  // The library's GSS code takes this for the beginning of a context.
  const std::string begin = word(1) + word(1) + word(1) + word(1) + word(0);
  for (const uint32_t flavor : {2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 10u, 390003u, 0xFFFFFFFFu}) {
    EXPECT_FALSE(take(ends, null_call(flavor, AUTH_NONE, begin)).served) << flavor;
    // Denied: authentication error, rejected credential.
    EXPECT_EQ(reply_at(ends), word(7) + word(1) + word(1) + word(1) + word(2)) << flavor;
  }
  cut_connection(ends);
}

TEST(Transport, NoneAndSysAreServedWithAnyVerifier) {
  const connection ends = make_connection();
  // Stamp, an empty name, user, group and no groups.
  const std::string nobody = zeros(5);
  for (uint32_t verifier = 0; verifier <= 10; ++verifier) {
    EXPECT_TRUE(take(ends, null_call(AUTH_NONE, verifier, nobody)).served) << verifier;
    EXPECT_TRUE(take(ends, null_call(AUTH_SYS, verifier, nobody)).served) << verifier;
  }
  cut_connection(ends);
}

TEST(Transport, ReplyAfterACutCallIsWhole) {
  const connection ends = make_connection();
  const outcome seen = take(ends, header(kAnswerBig, 99) + word(3));
  EXPECT_TRUE(seen.served);
  EXPECT_FALSE(seen.decoded);
  std::string reply(9000, '\0');
  const ssize_t got = recv(ends.client, reply.data(), reply.size(), MSG_DONTWAIT);
  ASSERT_EQ(got, static_cast<ssize_t>(24 + 12 + kBigReply));
  reply.resize(static_cast<size_t>(got));
  EXPECT_EQ(reply.substr(0, 8), word(99) + word(1));
  EXPECT_TRUE(reply.ends_with(text_item(std::string(kBigReply, 'i'))));
  cut_connection(ends);
}

TEST(Transport, DatagramBeyondTheReceiveBufferDoesNoHarm) {
  const connection ends = make_connection();
  const std::string huge = header(kAnswerNothing) + word(3) + text_item(std::string(20000, 'x'));
  EXPECT_FALSE(take(ends, huge).decoded);
  EXPECT_TRUE(take(ends, header(kAnswerNothing) + word(3) + text_item("after")).decoded);
  cut_connection(ends);
}

// The transport of a library release with another record layout.
struct changed_transport {
  SVCXPRT transport;
  struct {
    uint64_t inserted;
    svc_dg_data data;
  } record;
};

static SVCXPRT* make_transport() {
  SVCXPRT* transport = svcudp_create(loopback_socket());
  EXPECT_NE(transport, nullptr);
  return transport;
}

static void copy_transport(const SVCXPRT* sound, changed_transport* copy) {
  copy->transport = *sound;
  memcpy(&copy->record.data, sound->xp_p2, sizeof copy->record.data);
  copy->transport.xp_p2 = &copy->record.data;
  copy->transport.xp_verf.oa_base = copy->record.data.su_verfbody;
}

TEST(Transport, LibrarysTransportIsKnown) {
  SVCXPRT* sound = make_transport();
  EXPECT_TRUE(transport_is_known(sound));
  changed_transport copy;
  copy_transport(sound, &copy);
  EXPECT_TRUE(transport_is_known(&copy.transport));
  svc_destroy(sound);
}

TEST(Transport, AnotherLayoutIsNoticed) {
  SVCXPRT* sound = make_transport();
  void (*const changes[])(changed_transport*) = {
      [](changed_transport* copy) { copy->transport.xp_p2 = nullptr; },
      [](changed_transport* copy) { copy->transport.xp_p2 = &copy->record; },
      [](changed_transport* copy) { copy->transport.xp_verf.oa_base += 8; },
      [](changed_transport* copy) { copy->record.data.su_iosz += 4; },
      [](changed_transport* copy) { copy->record.data.su_xdrs.x_handy = 0; },
      [](changed_transport* copy) { copy->record.data.su_xdrs.x_op = XDR_FREE; },
      [](changed_transport* copy) { copy->record.data.su_xdrs.x_private = &copy->record; },
      [](changed_transport* copy) {
        copy->record.data.su_xdrs.x_base = copy->record.data.su_verfbody;
      },
  };
  for (size_t i = 0; i < std::size(changes); ++i) {
    changed_transport copy;
    copy_transport(sound, &copy);
    changes[i](&copy);
    EXPECT_FALSE(transport_is_known(&copy.transport)) << i;
  }
  svc_destroy(sound);
}

TEST(Transport, AnotherLayoutEndsTheServiceForGood) {
  SVCXPRT* sound = make_transport();
  changed_transport copy;
  copy_transport(sound, &copy);
  copy.transport.xp_p2 = &copy.record;
  EXPECT_EXIT(bound_transport(&copy.transport), testing::ExitedWithCode(0),
              "^the RPC library keeps its transport in another way than wificonfd was built for: ");
  svc_destroy(sound);
}
