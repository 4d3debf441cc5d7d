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

static std::string act(const std::string& message, trap_state& trap) {
  std::vector<std::string> words = split(message);
  if (words[0] == "fail") return fail_act(trap, words);
  if (words[0] == "set") return do_set(words, trap.driver);
  if (words[0] == "advance") return do_advance(words, trap);
  if (words[0] == "resume") return do_resume(trap);
  if (words[0] == "status") return std::string("ok") + kControlBreak + status_json(trap);
  if (words[0] != "pause") return "unknown message";
  around_pause(trap, true);
  return "ok";
}

void control_serve(int client, trap_state& trap) {
  std::string message(kControlMessageMax, '\0');
  ssize_t got = recv(client, message.data(), message.size(), 0);
  if (got > 0) {
    trap_catch_up(trap);
    around_go_on(trap);
    message.resize(static_cast<size_t>(got));
    std::string answer = act(message, trap);
    // Runs before the answer: whoever ended delays then finds those calls in the journal.
    static_cast<void>(trap_run_delayed(trap));
    if (answer.size() > kControlMessageMax) answer = "the answer is too long for one message";
    static_cast<void>(send(client, answer.data(), answer.size(), MSG_NOSIGNAL));
  }
  close(client);
}
