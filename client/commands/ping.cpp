// "wificonf ping": checks that the daemon answers.
#include <algorithm>
#include <cstdlib>

#include "base/moment.h"
#include "base/text.h"
#include "commands/command.h"
#include "commands/session.h"
#include "show/json.h"

// For "--wait", in seconds: the longest wait, the timeout of one try, and the pause between
// tries.
static constexpr double kWaitMax = 86400;
static constexpr double kWaitTry = 0.5;
static constexpr double kWaitPause = 0.02;

// Reads "ping --wait SECONDS"; 0 seconds without the option. False for other words.
static bool read_wait(const std::vector<std::string>& words, double* seconds) {
  *seconds = 0;
  if (words.size() == 1) return true;
  if (words.size() != 3 || words[1] != "--wait") return false;
  char* end = nullptr;
  *seconds = strtod(words[2].c_str(), &end);
  return end != words[2].c_str() && *end == '\0' && *seconds > 0 && *seconds <= kWaitMax;
}

// Pings until there is an answer or the time is up. A ping has no effect, so it may be sent
// again.
static void wait_for_answer(const client_options& options, double seconds) {
  const double end = moment_now() + seconds;
  const call_target target{options.host, options.port, options.timeout};
  while (call_procedure(target, 0, {}).status != call_status::kAnswered && moment_now() < end)
    moment_sleep_until(moment_now() + kWaitPause);
}

static exit_status run_ping(const output_streams& streams, const client_options& given) {
  client_options options = given;
  double wait = 0;
  if (!read_wait(options.words, &wait))
    return fail(streams, kExitUsage, "ping takes no arguments but --wait SECONDS, up to 86400");
  if (wait > 0) {
    options.timeout = std::min(options.timeout, kWaitTry);
    wait_for_answer(options, wait);
  }
  call_answer answer;
  exit_status status = kExitDone;
  if (!session_call(streams, options, 0, "ping", {}, answer, &status)) return status;
  if (!answer.result.empty())
    return fail(streams, kExitNoAnswer,
                "ping: the reply has a result where none belongs; is it the daemon that answers "
                "there?");
  if (options.json)
    print(streams, json_ping(answer.seconds));
  else
    print(streams,
          text_format("%s port %u answered in %.3f ms\n", text_escape(options.host).c_str(),
                      options.port, answer.seconds * 1000));
  return kExitDone;
}

static constexpr const char* kPingUsages[] = {"[OPTION...] ping [--wait SECONDS]"};
static constexpr command_offer kPingOffers[] = {{"0", "--wait"}};

const command_row kPingCommand = {.name = "ping",
                                  .usages = kPingUsages,
                                  .meaning =
                                      "is the daemon there, and how long does an answer take; "
                                      "--wait asks until it is, that long at most",
                                  .offers = kPingOffers,
                                  .run = run_ping};
