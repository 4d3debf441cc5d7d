// profile_race [--updates N]
//
// Run it inside the simulated gateway: several processes change the 2.4 GHz profile at
// the same time, each N times. First two processes use the store directly, then two
// daemons are called, one of them in its own network namespace. In both rounds a foreign
// process joins in, which takes the profile's lock itself. Before every update, each
// process checks that its last one is still there and that the profile is whole. Exits
// with 1 when an update was lost or the profile was not whole.

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "profile/store.h"
#include "support/daemon.h"
#include "support/files.h"
#include "support/wire.h"
#include "trust/profile_file.h"

namespace {

// One of the processes: it has its own key, and its own field in a list that all share.
struct contender {
  const char* name;
  int bss;  // of the key SSID<bss> and the field
  // One update, of the key or the field. False when it was refused.
  bool (*update)(const contender& self, bool field, const std::string& value, int n);
  void (*prepare)();
  void (*finish)();
};

}  // namespace

static constexpr char kList[] = "RADIUS_Server";

static std::vector<std::string> keys_at_first;

static int faults;

static void fault(const contender& self, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

static void fault(const contender& self, const char* format, ...) {
  if (++faults > 10) return;
  va_list values;
  va_start(values, format);
  printf("FINDING: %s: ", self.name);
  vprintf(format, values);
  printf("\n");
  va_end(values);
}

static std::string key_of(const contender& self) {
  return "SSID" + std::to_string(self.bss);
}

static std::string field_in(const std::string& list, int index) {
  size_t start = 0;
  for (; index > 0 && start != list.npos; --index)
    start = list.find(';', start) == list.npos ? list.npos : list.find(';', start) + 1;
  return start == list.npos ? "" : list.substr(start, list.find(';', start) - start);
}

static std::string present(const contender& self, const std::string& text, bool field) {
  return field ? field_in(value_in(text, kList), self.bss - 1) : value_in(text, key_of(self));
}

static void check(const contender& self, const std::string& text, bool field,
                  const std::string& expected) {
  const std::string wrong = incompleteness(text, keys_at_first);
  if (!wrong.empty()) fault(self, "the profile %s", wrong.c_str());
  const std::string there = present(self, text, field);
  if (!expected.empty() && there != expected)
    fault(self, "\"%s\" is there, \"%s\" was written", there.c_str(), expected.c_str());
}

// Updates the key and the field in turn.
static void contend(const contender& self, int updates) {
  std::string last[2];
  for (int n = 0; n < updates; ++n) {
    const bool field = n % 2 == 1;
    check(self, locked_profile(kProfile24), field, last[field]);
    const std::string value = field
                                  ? "10." + std::to_string(self.bss) + "." +
                                        std::to_string(n / 250) + "." + std::to_string(n % 250 + 1)
                                  : std::string(self.name) + " " + std::to_string(n);
    if (!self.update(self, field, value, n)) fault(self, "update %d was refused", n);
    last[field] = value;
  }
  for (const bool field : {false, true})
    check(self, locked_profile(kProfile24), field, last[field]);
}

static void nothing() {}

// The daemon's store without the daemon.
static bool update_store(const contender& self, bool field, const std::string& value, int) {
  const unsigned result =
      field ? wifiprofile_updateParam_with_index(kProfile24, kList, self.bss - 1, value.c_str(), "")
            : wifiprofile_updateParam(kProfile24, key_of(self).c_str(), value.c_str(), "");
  return result == kProfileWritten;
}

static bool update_daemon(const contender& self, bool field, const std::string& value, int) {
  static constexpr uint32_t kSetRadiusServer = 189;
  reply_message reply = {};
  const uint32_t procedure = field ? kSetRadiusServer : kSetSsid;
  const std::string arguments = xdr_word(static_cast<uint32_t>(self.bss)) + xdr_text(value);
  const uint32_t success = field ? kProfileWritten : 0;
  return call(procedure, arguments, &reply, 10) && reply.accept_status == kAcceptSuccess &&
         word_at(reply.payload, 0) == success;
}

static pid_t supervisor;

static void start_own_daemon() {
  supervisor = start_supervisor();
  if (!wait_until(daemon_answers, 10)) fputs("profile_race: no daemon\n", stderr);
}

static void start_separate_daemon() {
  if (unshare(CLONE_NEWNET) != 0) perror("profile_race: network namespace");
  run("ip link set lo up; ip addr add 192.168.254.254/32 dev lo");
  start_own_daemon();
}

static void end_daemon() {
  end_process(supervisor, SIGTERM);
}

static std::string replaced(std::string text, const std::string& key, const std::string& value) {
  const size_t at = ("\n" + text).find("\n" + key + "=");
  const size_t from = at + key.size() + 1;
  return text.replace(from, text.find('\n', from) - from, value);
}

static std::string with_field(const std::string& list, int index, const std::string& field) {
  std::string result;
  for (int i = 0; i < 8; ++i)
    result += (i > 0 ? ";" : "") + (i == index ? field : field_in(list, i));
  return result;
}

static bool write_whole(const std::string& path, const std::string& text, int flags) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0644);
  const bool written = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  close(file);
  return written;
}

// As a shell script on the box does it.
static bool update_by_shell(const contender& self, const std::string& value) {
  int status = -1;
  run("flock /tmp/.mt76xx_24.dat.lock sed -i 's/^" + key_of(self) + "=.*/" + key_of(self) + "=" +
          value + "/' /tmp/mt76xx_24.dat",
      &status);
  return status == 0;
}

// As the driver's tools do it: under the lock, sometimes in place and sometimes by
// rename.
static bool update_foreign(const contender& self, bool field, const std::string& value, int n) {
  if (n % 20 == 0) return update_by_shell(self, value);
  const int lock = lock_profile(kProfile24, LOCK_EX);
  std::string text = read_file(kProfile24);
  const std::string list = with_field(value_in(text, kList), self.bss - 1, value);
  text = field ? replaced(text, kList, list) : replaced(text, key_of(self), value);
  bool done;
  if (n % 4 < 2) {
    done = write_whole(kProfile24, text, O_TRUNC);
  } else {
    const std::string temporary = std::string(kProfile24) + ".foreign";
    done = write_whole(temporary, text, O_TRUNC) && rename(temporary.c_str(), kProfile24) == 0;
  }
  close(lock);
  return lock >= 0 && done;
}

// Runs them at the same time; returns how many of them failed.
static int race(const char* title, const std::vector<contender>& contenders, int updates) {
  fflush(stdout);
  const auto start = std::chrono::steady_clock::now();
  std::vector<pid_t> pids;
  for (const contender& one : contenders) {
    pids.push_back(fork());
    if (pids.back() != 0) continue;
    one.prepare();
    contend(one, updates);
    one.finish();
    fflush(stdout);
    _exit(faults > 0 ? 1 : 0);
  }
  int failed = 0;
  for (const pid_t pid : pids) {
    int status = 0;
    waitpid(pid, &status, 0);
    if (status != 0) ++failed;
  }
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  printf("%s: %zu processes, %d updates each, %.1f s, %s\n", title, contenders.size(), updates,
         elapsed.count(), failed == 0 ? "every one landed" : "LOST");
  return failed;
}

int main(int argc, char** argv) {
  const bool given = argc == 3 && strcmp(argv[1], "--updates") == 0;
  const int updates = given ? atoi(argv[2]) : 300;
  if ((argc != 1 && !given) || updates < 2) {
    fputs("usage: profile_race [--updates N]\n", stderr);
    return 2;
  }
  keys_at_first = keys_in(read_file(kProfile24));
  const contender foreign = {"foreign", 4, update_foreign, nothing, nothing};
  int failed = race("two stores and a foreign process",
                    {{"store", 2, update_store, nothing, nothing},
                     {"other store", 3, update_store, nothing, nothing},
                     foreign},
                    updates);
  failed += race("two daemons and a foreign process",
                 {{"daemon", 2, update_daemon, start_own_daemon, end_daemon},
                  {"other daemon", 3, update_daemon, start_separate_daemon, end_daemon},
                  foreign},
                 updates);
  return failed == 0 ? 0 : 1;
}
