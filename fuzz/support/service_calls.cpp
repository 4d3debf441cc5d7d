#include "support/service_calls.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <rpc/svc_dg.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "daemon/transport.h"
#include "rpc/back_ends.h"
#include "rpc/dispatch.h"
#include "rpc/row_argument.h"
#include "support/check.h"
#include "support/daemon_state.h"
#include "support/outside.h"
#include "support/sim_calls.h"

// ---- The table.

#define FILTER(filter) reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(filter))

template <typename T>
constexpr size_t kSizeOf = sizeof(T);
template <>
constexpr size_t kSizeOf<void> = 0;

#define ARGUMENT_FILTER(type) ARGUMENT_FILTER_(type)
#define ARGUMENT_FILTER_(type) FILTER(xdr_##type)

#define RESULT_CODE FILTER(xdr_wlan_config_return_code_e), sizeof(wlan_config_return_code_e)
#define RESULT_RECORD FILTER(xdr_wlan_config_result_data_t), sizeof(wlan_config_result_data_t)

// The largest size of a text is up to its back end.
const std::vector<procedure_filters>& procedures() {
  static const std::vector<procedure_filters> kTable = {
#define CODE RESULT_CODE, result_shape::CODE, 0
#define UPDATE CODE
#define INT(label) RESULT_RECORD, result_shape::INT, sizeof(int)
#define TEXT(label) RESULT_RECORD, result_shape::TEXT, 0
#define WORDS(type) RESULT_RECORD, result_shape::WORDS, sizeof(type)
#define IMAGE(type) RESULT_RECORD, result_shape::IMAGE, sizeof(type)
#define NONE RESULT_RECORD, result_shape::NONE, 0
#define PROCEDURE(number, name, stem, topic, members, answer, ...)  \
  {number, #name, ARGUMENT_FILTER(ARGUMENT(stem, FIRST_##members)), \
   kSizeOf<ARGUMENT(stem, FIRST_##members)>, answer},
#include "rpc/procedures.def"
  };
  return kTable;
}

const procedure_filters* find_filters(uint32_t number) {
  const std::vector<procedure_filters>& all = procedures();
  const auto found = std::lower_bound(
      all.begin(), all.end(), number,
      [](const procedure_filters& row, uint32_t wanted) { return row.number < wanted; });
  return found != all.end() && found->number == number ? &*found : nullptr;
}

// ---- The transport. Receiving and sending are replaced at the RPC library's system
// calls.

// The most that the library reads at once.
static constexpr size_t kLargestDatagram = 8800;

static std::string_view datagram;
static bool datagram_there;
static std::vector<std::string> replies;
static SVCXPRT* transport;
static struct SVCXPRT::xp_ops noting;
static const struct SVCXPRT::xp_ops* bounded;

static int datagram_length() {
  return datagram_there ? static_cast<int>(datagram.size()) : 0;
}

static void drop_datagram() {
  datagram_there = false;
}

extern "C" ssize_t recvmsg(int fd, msghdr* message, int flags) {
  if (fd != service.fd || simulated == nullptr) return syscall(SYS_recvmsg, fd, message, flags);
  CHECK(datagram_there && message->msg_iovlen == 1);
  datagram_there = false;
  const iovec& room = message->msg_iov[0];
  CHECK(room.iov_len == kLargestDatagram);
  const size_t length = std::min(datagram.size(), room.iov_len);
  // Overwrites what an earlier datagram left, so that the use of a stale byte shows.
  memset(room.iov_base, 0xA5, room.iov_len);
  datagram.copy(static_cast<char*>(room.iov_base), length);
  sockaddr_in sender = {};
  sender.sin_family = AF_INET;
  sender.sin_port = htons(1023);
  sender.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  memcpy(message->msg_name, &sender, sizeof sender);
  message->msg_namelen = sizeof sender;
  message->msg_controllen = 0;
  message->msg_flags = 0;
  return static_cast<ssize_t>(length);
}

extern "C" ssize_t sendmsg(int fd, const msghdr* message, int flags) {
  if (fd != service.fd || simulated == nullptr) return syscall(SYS_sendmsg, fd, message, flags);
  std::string reply;
  for (size_t i = 0; i < message->msg_iovlen; ++i) {
    reply.append(static_cast<const char*>(message->msg_iov[i].iov_base),
                 message->msg_iov[i].iov_len);
  }
  replies.push_back(reply);
  return static_cast<ssize_t>(reply.size());
}

// The arguments that are decoded and not freed yet.
static xdrproc_t decoder;
static void* decoded;

static bool_t note_arguments(SVCXPRT* from, xdrproc_t filter, void* arguments) {
  const bool_t done = bounded->xp_getargs(from, filter, arguments);
  CHECK(decoded == nullptr);
  if (done) {
    decoder = filter;
    decoded = arguments;
  }
  return done;
}

static bool_t free_arguments(SVCXPRT* from, xdrproc_t filter, void* arguments) {
  CHECK(arguments == decoded);
  decoded = nullptr;
  return bounded->xp_freeargs(from, filter, arguments);
}

static void free_decoded() {
  if (decoded != nullptr) xdr_free(decoder, decoded);
  decoded = nullptr;
}

static int local_socket() {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_UDP);
  sockaddr_in local = {};
  local.sin_family = AF_INET;
  local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  CHECK(bind(sock, reinterpret_cast<sockaddr*>(&local), sizeof local) == 0);
  return sock;
}

void start_service() {
  if (transport != nullptr) return;
  setenv("TZ", "UTC0", 1);
  transport = svcudp_create(local_socket());
  CHECK(transport != nullptr);
  bound_transport(transport);
  CHECK(svc_register(transport, kProgram, kVersion, wlan_config_rpc_prog_1, 0));
  bounded = transport->xp_ops;
  noting = *bounded;
  noting.xp_getargs = note_arguments;
  noting.xp_freeargs = free_arguments;
  transport->xp_ops = &noting;
  service = {transport->xp_fd, datagram_length, drop_datagram};
  note_daemon_state();
}

// ---- The reply that a datagram must get.

namespace {

struct call_header {
  uint32_t xid, program, version, procedure, flavor;
  std::string_view arguments;
};

enum reply_status : uint32_t {
  kSuccess,
  kNoProgram,
  kNoVersion,
  kNoProcedure,
  kGarbage,
};

}  // namespace

static bool take_word(std::string_view* bytes, uint32_t* word) {
  if (bytes->size() < 4) return false;
  memcpy(word, bytes->data(), 4);
  *word = ntohl(*word);
  bytes->remove_prefix(4);
  return true;
}

static constexpr uint32_t kLargestCredentials = 400;

static bool take_credentials(std::string_view* bytes, uint32_t* flavor) {
  uint32_t length = 0;
  if (!take_word(bytes, flavor) || !take_word(bytes, &length)) return false;
  const size_t padded = (size_t{length} + 3) / 4 * 4;
  if (length > kLargestCredentials || padded > bytes->size()) return false;
  bytes->remove_prefix(padded);
  return true;
}

static bool parse_call(std::string_view bytes, call_header* call) {
  uint32_t direction = 0;
  uint32_t rpc_version = 0;
  uint32_t verifier = 0;
  const bool whole = take_word(&bytes, &call->xid) && take_word(&bytes, &direction) &&
                     take_word(&bytes, &rpc_version) && take_word(&bytes, &call->program) &&
                     take_word(&bytes, &call->version) && take_word(&bytes, &call->procedure) &&
                     take_credentials(&bytes, &call->flavor) && take_credentials(&bytes, &verifier);
  call->arguments = bytes;
  return whole && direction == CALL && rpc_version == RPC_MSG_VERSION;
}

// Decodes a copy of exactly these bytes. `left`: how many were not read.
static bool decodes(xdrproc_t filter, size_t size, std::string_view bytes, size_t* left) {
  const std::unique_ptr<char[]> copy = std::make_unique<char[]>(bytes.size());
  bytes.copy(copy.get(), bytes.size());
  const std::unique_ptr<char[]> object = std::make_unique<char[]>(size);
  XDR stream;
  xdrmem_create(&stream, copy.get(), static_cast<u_int>(bytes.size()), XDR_DECODE);
  const bool done = filter(&stream, object.get());
  *left = bytes.size() - xdr_getpos(&stream);
  xdr_free(filter, object.get());
  return done;
}

static reply_status deserved(const call_header& call) {
  if (call.program != kProgram) return kNoProgram;
  if (call.version != kVersion) return kNoVersion;
  if (call.procedure == NULLPROC) return kSuccess;
  const procedure_filters* row = find_filters(call.procedure);
  if (row == nullptr) return kNoProcedure;
  size_t left = 0;
  return decodes(row->argument, row->argument_size, call.arguments, &left) ? kSuccess : kGarbage;
}

// A record is the status, words after their number, and data after its length.
static bool has_shape(const procedure_filters& row, std::string_view result) {
  uint32_t code = 0;
  uint32_t words = 0;
  uint32_t data = 0;
  take_word(&result, &code);
  take_word(&result, &words);
  result.remove_prefix(std::min<size_t>(result.size(), size_t{4} * words));
  take_word(&result, &data);
  switch (row.shape) {
    case result_shape::CODE:
      return true;
    case result_shape::INT:
      return words == 4 && data == 0;
    case result_shape::WORDS:
      return words == row.shape_size && data == 0;
    case result_shape::IMAGE:
      return words == 0 && data == row.shape_size;
    case result_shape::TEXT:
      return words == 0 && data > 0 && result.find('\0') == data - 1;
    case result_shape::NONE:
      return words == 0 && data == 0;
  }
  return false;
}

static void check_result(const call_header& call, std::string_view result) {
  const procedure_filters* row = find_filters(call.procedure);
  if (call.procedure == NULLPROC) {
    CHECK(result.empty());
    return;
  }
  size_t left = 0;
  if (!decodes(row->result, row->result_size, result, &left) || left != 0) {
    broken("the reply of %s does not decode, %zu bytes are left", row->name, left);
  }
  if (!has_shape(*row, result)) broken("the reply of %s has another shape", row->name);
}

// The library refuses a flavor that it serves only for its contents, and AUTH_NONE has none.
static void check_denial(const call_header& call, std::string_view rest) {
  uint32_t reason = 0;
  uint32_t why = 0;
  CHECK(take_word(&rest, &reason) && take_word(&rest, &why) && rest.empty());
  CHECK(reason == AUTH_ERROR && call.flavor != AUTH_NONE);
  CHECK(why == AUTH_REJECTEDCRED || (call.flavor == AUTH_SYS && why == AUTH_BADCRED));
}

static void check_reply(const call_header& call, std::string_view reply) {
  uint32_t xid = 0;
  uint32_t direction = 0;
  uint32_t denied = 0;
  uint32_t status = 0;
  uint32_t flavor = 0;
  const bool whole =
      take_word(&reply, &xid) && take_word(&reply, &direction) && take_word(&reply, &denied);
  CHECK(whole && xid == call.xid && direction == REPLY && denied <= 1);
  if (denied == 1) {
    check_denial(call, reply);
    return;
  }
  CHECK(call.flavor == AUTH_NONE || call.flavor == AUTH_SYS);
  CHECK(take_credentials(&reply, &flavor) && take_word(&reply, &status));
  const reply_status expected = deserved(call);
  if (status != expected) broken("status %u instead of %u", status, expected);
  if (status == kSuccess) check_result(call, reply);
}

// ---- Serving.

// False if the service has ended, as it may.
static bool service_returns() {
  if (setjmp(simulated->ended) != 0) return false;
  svc_getreq_common(service.fd);
  return true;
}

static bool pass_to_service() {
  simulated->exit_allowed = true;
  simulated->at_exit = free_decoded;
  const bool returned = service_returns();
  simulated->exit_allowed = false;
  CHECK(decoded == nullptr && !datagram_there);
  return returned;
}

// After the service's end a new one starts, with nothing open.
static void replace_service() {
  simulated->descriptors.clear();
  simulated->worker_there = false;
  end_daemon_state();
  restore_daemon_state();
}

void serve_datagram(std::string_view bytes) {
  call_header call = {};
  const bool is_call = parse_call(bytes.substr(0, kLargestDatagram), &call);
  datagram = bytes;
  datagram_there = true;
  replies.clear();
  outside_before_call();
  if (!pass_to_service()) {
    CHECK(replies.empty());
    replace_service();
    return;
  }
  if (replies.size() != (is_call ? 1 : 0)) broken("%zu replies", replies.size());
  if (is_call) check_reply(call, replies[0]);
  replies = {};
  outside_after_call();
}

static void put_word(std::string* bytes, uint32_t word) {
  const uint32_t big = htonl(word);
  bytes->append(reinterpret_cast<const char*>(&big), sizeof big);
}

void serve_call(uint32_t procedure, std::string_view arguments) {
  std::string bytes;
  for (const uint32_t word : {7u, 0u, 2u, static_cast<uint32_t>(kProgram),
                              static_cast<uint32_t>(kVersion), procedure, 0u, 0u, 0u, 0u}) {
    put_word(&bytes, word);
  }
  serve_datagram(bytes.append(arguments));
}
