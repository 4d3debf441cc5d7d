#include "wire/call.h"

#include <netdb.h>
#include <poll.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <ctime>

#include "base/moment.h"
#include "base/text.h"

static call_answer failed(call_status status, int error_number = 0) {
  call_answer answer{};
  answer.status = status;
  answer.error_number = error_number;
  return answer;
}

static call_answer failed_system(int error_number) {
  bool refused = error_number == ECONNREFUSED;
  return failed(refused ? call_status::kRefused : call_status::kNetwork, error_number);
}

// Opens a connected socket: the kernel drops datagrams from elsewhere and reports a closed
// port. On failure returns -1 and fills *answer.
static int open_socket(const call_target& target, call_answer* answer) {
  addrinfo hints{};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_DGRAM;
  addrinfo* found = nullptr;
  std::string port = std::to_string(target.port);
  if (getaddrinfo(target.host.c_str(), port.c_str(), &hints, &found) != 0) {
    *answer = failed(call_status::kUnknownHost);
    return -1;
  }
  int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd < 0 || connect(fd, found->ai_addr, found->ai_addrlen) != 0) {
    *answer = failed_system(errno);
    if (fd >= 0) close(fd);
    fd = -1;
  }
  freeaddrinfo(found);
  return fd;
}

static uint32_t new_xid() {
  uint32_t xid = 0;
  if (getrandom(&xid, sizeof xid, 0) != sizeof xid)
    xid = static_cast<uint32_t>(getpid()) ^ static_cast<uint32_t>(time(nullptr));
  return xid;
}

// Seconds between two calls of go_on.
static constexpr double kIdlePeriod = 0.2;

namespace {

enum class wait_result { kReadable, kTimeOver, kGivenUp, kFailed };

}  // namespace

// Waits until `deadline` for the socket to be readable. kFailed: see errno.
static wait_result wait_readable(int fd, double deadline, const call_idle* idle) {
  while (true) {
    const double left = deadline - moment_now();
    if (left <= 0) return wait_result::kTimeOver;
    pollfd inputs[] = {{fd, POLLIN, 0}, {idle == nullptr ? -1 : idle->fd, POLLIN, 0}};
    const double period = idle == nullptr ? left : std::min(left, kIdlePeriod);
    const int ready = poll(inputs, 2, static_cast<int>(std::ceil(period * 1000)));
    if (ready < 0 && errno != EINTR) return wait_result::kFailed;
    if (ready > 0 && inputs[0].revents != 0) return wait_result::kReadable;
    if (idle != nullptr && !idle->go_on(idle->context)) return wait_result::kGivenUp;
  }
}

static call_answer answered(const rpc_reply& reply, double seconds) {
  call_answer answer = failed(call_status::kAnswered);
  answer.rpc = reply.status;
  answer.low = reply.low;
  answer.high = reply.high;
  answer.result.assign(reply.result.begin(), reply.result.end());
  answer.seconds = seconds;
  return answer;
}

static call_answer await_reply(int fd, uint32_t xid, double started, const call_target& target) {
  byte_string buffer(65536);  // no datagram is longer
  while (true) {
    const wait_result waited = wait_readable(fd, started + target.timeout, target.idle);
    if (waited == wait_result::kFailed) return failed_system(errno);
    if (waited == wait_result::kTimeOver) return failed(call_status::kTimeout);
    if (waited == wait_result::kGivenUp) return failed(call_status::kGivenUp);
    ssize_t length = recv(fd, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (length < 0 && (errno == EAGAIN || errno == EINTR)) continue;  // a bad checksum
    if (length < 0) return failed_system(errno);
    unread_bytes message(buffer.data(), static_cast<size_t>(length));
    rpc_reply reply = rpc_read_reply(xid, message);
    if (reply.status != rpc_status::kOther) return answered(reply, moment_now() - started);
  }
}

static std::string explain_rpc(const call_answer& answer, const char* name) {
  switch (answer.rpc) {
    case rpc_status::kSuccess:
      return "";
    case rpc_status::kOther:
    case rpc_status::kMalformed:
      return text_format("%s: the reply is malformed; is it the daemon that answers there?", name);
    case rpc_status::kDenied:
      return text_format("%s: the service denied the call; is it the daemon that answers there?",
                         name);
    case rpc_status::kProgramUnavailable:
      return text_format(
          "%s: program 0x%x is unavailable; another service answers there, "
          "check --host and --port",
          name, kProgram);
    case rpc_status::kVersionMismatch:
      return text_format(
          "%s: version mismatch, the service has versions %u to %u and not %u; "
          "use a client of its release",
          name, answer.low, answer.high, kProgramVersion);
    case rpc_status::kProcedureUnavailable:
      return text_format(
          "%s: procedure unavailable, this daemon does not offer it, or not yet; "
          "compare the releases of daemon and client",
          name);
    case rpc_status::kGarbageArguments:
      return text_format(
          "%s: garbage arguments, the daemon could not decode the call; "
          "compare the releases of daemon and client",
          name);
    case rpc_status::kSystemError:
      return text_format(
          "%s: system error, the daemon could not make its reply; "
          "see the daemon's standard error",
          name);
  }
  return "";
}

call_answer call_procedure(const call_target& target, uint32_t number,
                           const byte_string& arguments) {
  uint32_t xid = new_xid();
  byte_string message = rpc_call(xid, number, arguments);
  if (message.size() > kCallBytesMax) return failed(call_status::kTooLong);
  call_answer answer{};
  int fd = open_socket(target, &answer);
  if (fd < 0) return answer;
  double started = moment_now();
  if (send(fd, message.data(), message.size(), 0) < 0)
    answer = failed_system(errno);
  else
    answer = await_reply(fd, xid, started, target);
  close(fd);
  return answer;
}

std::string call_explain(const call_answer& answer, const call_target& target,
                         const std::string& what) {
  std::string host = text_escape(target.host);
  const char* name = what.c_str();
  switch (answer.status) {
    case call_status::kAnswered:
      return explain_rpc(answer, name);
    case call_status::kUnknownHost:
      return text_format("%s: host '%s' has no IPv4 address; check --host", name, host.c_str());
    case call_status::kTooLong:
      return text_format("%s: the arguments are too long; a call takes at most %zu bytes", name,
                         kCallBytesMax);
    case call_status::kRefused:
      return text_format(
          "%s: nothing listens on %s port %u; is the daemon running, and is it registered "
          "(rpcinfo -p %s)?",
          name, host.c_str(), target.port, host.c_str());
    case call_status::kNetwork:
      return text_format("%s: cannot reach %s port %u: %s; check --host and the network", name,
                         host.c_str(), target.port, strerror(answer.error_number));
    case call_status::kTimeout:
      return text_format(
          "%s: no answer from %s port %u in %g s. The call was sent and may still be carried out: "
          "the daemon serves one call after the other, and some take long; 'wificonf ping --wait "
          "60' tells when it answers again. If never, the address is not reachable, or the daemon "
          "hangs",
          name, host.c_str(), target.port, target.timeout);
    case call_status::kGivenUp:
      return text_format("%s: given up", name);
  }
  return "";
}

static const char* rpc_kind(rpc_status status) {
  switch (status) {
    case rpc_status::kSuccess:
      return "";
    case rpc_status::kOther:
    case rpc_status::kMalformed:
      return "malformed_reply";
    case rpc_status::kDenied:
      return "denied";
    case rpc_status::kProgramUnavailable:
      return "program_unavailable";
    case rpc_status::kVersionMismatch:
      return "version_mismatch";
    case rpc_status::kProcedureUnavailable:
      return "procedure_unavailable";
    case rpc_status::kGarbageArguments:
      return "garbage_arguments";
    case rpc_status::kSystemError:
      return "system_error";
  }
  return "";
}

const char* call_kind(const call_answer& answer) {
  switch (answer.status) {
    case call_status::kAnswered:
      return rpc_kind(answer.rpc);
    case call_status::kUnknownHost:
      return "unknown_host";
    case call_status::kTooLong:
      return "usage";
    case call_status::kRefused:
      return "refused";
    case call_status::kNetwork:
      return "network";
    case call_status::kTimeout:
      return "timeout";
    case call_status::kGivenUp:
      return "given_up";
  }
  return "";
}
