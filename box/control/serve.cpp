#include "control/serve.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cstdlib>

#include <cmath>

#include "base/report.h"
#include "control/connection.h"
#include "control/failures.h"
#include "control/status.h"
#include "gateway/around.h"
#include "gateway/pending.h"

static constexpr int kControlBacklog = 16;
static constexpr double kTimeMax = 1e12;  // seconds; 64 bits hold it in microseconds

// Every user in the box may use it: a box has no users to protect from each other.
int control_listen() {
  sockaddr_un address;
  int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  if (fd >= 0 && control_address("", address) &&
      bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
      chmod(kControlPath, 0666) == 0 && listen(fd, kControlBacklog) == 0) {
    return fd;
  }
  report_errno(nullptr, "open the control socket %s", kControlPath);
  if (fd >= 0) close(fd);
  return -1;
}

int control_accept(int listener) {
  return accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
}

static std::vector<std::string> split(const std::string& message) {
  std::vector<std::string> words(1);
  for (char c : message) {
    if (c == kControlBreak) {
      words.emplace_back();
    } else {
      words.back() += c;
    }
  }
  return words;
}

static std::string do_set(const std::vector<std::string>& words, driver_state& driver) {
  scenario changed = driver.around;
  std::string wrong;
  if (!scenario_edit(changed, {words.begin() + 1, words.end()}, wrong)) return wrong;
  driver_advance(driver, driver_now_us(driver));
  driver_take_scenario(driver, changed);
  return around_publish(driver) ? "ok" : "the scenario could not be written";
}

static std::string do_advance(const std::vector<std::string>& words, trap_state& trap) {
  double seconds = words.size() == 2 ? atof(words[1].c_str()) : -1;
  double now = static_cast<double>(driver_now_us(trap.driver)) / 1e6;
  if (!(seconds >= 0) || seconds > kControlAdvanceMax) return "unknown message";
  if (now + seconds > kTimeMax) return "the box's time has reached its end";
  around_advance(trap, std::llround(seconds * 1e6));
  return "ok";
}

static std::string do_resume(trap_state& trap) {
  if (trap.driver.clock.speed <= 0) return "the speed is 0: \"gwbox set speed 1\" lets time run";
  around_pause(trap, false);
  return "ok";
}

static std::string act(const std::vector<std::string>& words, trap_state& trap) {
  if (words[0] == "fail") return fail_act(trap, words);
  if (words[0] == "set") return do_set(words, trap.driver);
  if (words[0] == "advance") return do_advance(words, trap);
  if (words[0] == "resume") return do_resume(trap);
  if (words[0] == "status") return std::string("ok") + kControlBreak + status_json(trap);
  if (words[0] == "pending") return std::string("ok") + kControlBreak + pending_json(trap);
  if (words[0] != "pause") return "unknown message";
  around_pause(trap, true);
  return "ok";
}

static void answer_and_close(int client, const std::string& answer) {
  static const std::string kTooLong = "the answer is too long for one message";
  const std::string& sent = answer.size() <= kControlMessageMax ? answer : kTooLong;
  static_cast<void>(send(client, sent.data(), sent.size(), MSG_NOSIGNAL));
  close(client);
}

// "wait SECONDS CONDITION...": true if the client is among WAITERS now.
static bool begin_to_wait(int client, const std::vector<std::string>& words,
                          std::vector<control_waiter>& waiters, std::string& wrong) {
  double seconds = words.size() > 2 ? atof(words[1].c_str()) : -1;
  condition wanted = {};
  wrong = "unknown message";
  if (!(seconds >= 0) || seconds > kControlWaitMax) return false;
  if (!condition_parse({words.begin() + 2, words.end()}, wanted, wrong)) return false;
  waiters.push_back({client, wanted, journal_now_us() + std::llround(seconds * 1e6)});
  return true;
}

void control_serve(int client, trap_state& trap, std::vector<control_waiter>& waiters) {
  std::string message(kControlMessageMax, '\0'), answer;
  ssize_t got = recv(client, message.data(), message.size(), 0);
  if (got <= 0) {
    close(client);
    return;
  }
  trap_catch_up(trap);
  around_go_on(trap);
  message.resize(static_cast<size_t>(got));
  std::vector<std::string> words = split(message);
  if (words[0] == "wait") {
    if (!begin_to_wait(client, words, waiters, answer)) answer_and_close(client, answer);
    return;
  }
  answer = act(words, trap);
  // Runs before the answer: whoever ended delays then finds those calls in the journal.
  static_cast<void>(trap_run_delayed(trap));
  answer_and_close(client, answer);
}

// Nothing tells when a thread goes to sleep, so whoever waits for that is looked after this often.
static constexpr int kLookAgainMs = 10;

// True if the waiter needs no more looks.
static bool serve_waiter(const control_waiter& waiter, trap_state& trap) {
  char byte = 0;
  std::string missing;
  if (recv(waiter.client, &byte, 1, MSG_DONTWAIT | MSG_PEEK) == 0) {
    close(waiter.client);
    return true;
  }
  bool holds = condition_holds(trap, waiter.wanted, missing);
  if (!holds && journal_now_us() < waiter.until_us) return false;
  answer_and_close(waiter.client, holds ? "ok" : std::string("ok") + kControlBreak + missing);
  return true;
}

int control_answer_waiters(std::vector<control_waiter>& waiters, trap_state& trap) {
  if (waiters.empty()) return -1;
  trap_catch_up(trap);
  around_go_on(trap);
  std::erase_if(waiters, [&](const control_waiter& w) { return serve_waiter(w, trap); });
  return waiters.empty() ? -1 : kLookAgainMs;
}
