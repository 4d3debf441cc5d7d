#include <arpa/inet.h>
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <thread>

#include "soak.h"
#include "support/files.h"

// What changes around the daemon while it is being called.

static constexpr char kLogDirectory[] = "/tmp/auto_debug";
static constexpr char kLogSwitch[] = "/tmp/auto_debug/rpc_dbg_en";
static constexpr char kLog[] = "/tmp/auto_debug/dbg_rpc.log";
static constexpr char kSteeringMarker[] = "/tmp/mtk_bnd_file";
static constexpr char kConsoleSwitch[] = "/tmp/wlandbg";

// The daemon moves the log away once it is longer than this, before it writes the next
// message; the longest message is a text of a call.
static constexpr int64_t kLogLimit = 1024000 + 16384;

static constexpr off_t kOutputLimit = 4 << 20;

// The controller is a thread of this program, which counts its requests.
static std::atomic<int64_t> requests;
static std::atomic<int> short_left;
static std::atomic<int> silent_left;

static constexpr size_t kRequestSize = 1496;
static constexpr size_t kReplySize = 2860;

static void serve_controller(int sock) {
  static constexpr char kFills[] = {'\0', 'x', '\xff', '1'};
  char request[4096];
  char reply[kReplySize];
  for (;;) {
    sockaddr_in peer = {};
    socklen_t size = sizeof peer;
    const ssize_t length =
        recvfrom(sock, request, sizeof request, 0, reinterpret_cast<sockaddr*>(&peer), &size);
    if (length != static_cast<ssize_t>(kRequestSize))
      finding("the controller got %zd bytes", length);
    const int64_t count = ++requests;
    if (silent_left > 0 && silent_left-- > 0) continue;
    memset(reply, kFills[count % 4], sizeof reply);
    const bool cut = short_left > 0 && short_left-- > 0;
    sendto(sock, reply, cut ? 100 : sizeof reply, 0, reinterpret_cast<sockaddr*>(&peer), size);
  }
}

void start_controller() {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(4567);
  inet_aton("192.168.254.254", &address.sin_addr);
  if (bind(sock, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
    finding("the controller has no port: %m");
  std::thread(serve_controller, sock).detach();
}

int64_t controller_requests() {
  return requests;
}

void controller_short(int count) {
  short_left = count;
}

void controller_silent(int count) {
  silent_left = count;
}

static void toggle(const char* path) {
  if (exists(path)) {
    unlink(path);
  } else {
    write_file(path, "");
  }
}

// The process with that name; 0 when there is none.
static pid_t process_named(const std::string& wanted) {
  pid_t found = 0;
  DIR* processes = opendir("/proc");
  while (const dirent* entry = readdir(processes)) {
    const pid_t pid = atoi(entry->d_name);
    if (pid > 0 && read_file(std::string("/proc/") + entry->d_name + "/comm") == wanted + "\n")
      found = pid;
  }
  closedir(processes);
  return found;
}

static bool kill_companion(size_t turn) {
  static const char* const kNames[] = {"bndstrg_1", "dcs",      "mtk_ctrl",
                                       "radstat",   "rtdot1xd", "rtinicapd"};
  const pid_t pid = process_named(kNames[turn % std::size(kNames)]);
  return pid > 0 && kill(pid, SIGKILL) == 0;
}

// Kills and starts, in turn, the process that the daemon signals.
static void toggle_hnc_init() {
  static pid_t pid = 0;
  if (pid > 0) {
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    pid = 0;
    return;
  }
  pid = fork();
  if (pid != 0) return;
  close_range(STDERR_FILENO + 1, ~0U, 0);
  execlp("HncInit", "HncInit", nullptr);
  _exit(127);
}

// In a soak of hours, the daemon's output would fill the memory.
static void cut_outputs() {
  for (const char* path : {"/tmp/daemon.out", "/tmp/daemon.err"}) {
    struct stat status;
    if (stat(path, &status) == 0 && status.st_size > kOutputLimit && truncate(path, 0) != 0)
      finding("%s cannot be cut: %m", path);
  }
}

static void check_log(soak_trouble* trouble) {
  static ino_t last = 0;
  struct stat status;
  if (stat(kLog, &status) != 0) return;
  if (last != 0 && status.st_ino != last) ++trouble->rotations;
  last = status.st_ino;
  trouble->largest_log = std::max<int64_t>(trouble->largest_log, status.st_size);
  if (status.st_size > kLogLimit)
    finding("the log has %lld bytes", static_cast<long long>(status.st_size));
}

static void next_lifecycle_request(soak_client* client, soak_trouble* trouble) {
  struct step {
    const char* procedure;
    const char* word;
  };
  static constexpr step kSteps[] = {
      {"WLAN_LOAD", "1"}, {"WLAN_INIT", ""},        {"WLAN_RESTART", "1"},   {"WLAN_RESTART", "9"},
      {"WLAN_INIT", ""},  {"WLAN_RESTART_ALL", ""}, {"WLAN_RESTART", "255"}, {"WLAN_RESET", ""},
  };
  const step& one = kSteps[static_cast<size_t>(trouble->lifecycle_requests++) % std::size(kSteps)];
  call_and_check(client, call_of(one.procedure, one.word));
}

// While one of these is silent, a caller waits two seconds.
static void silence_companions(bool silent) {
  const char* behaviour = silent ? "silent" : "normal";
  for (const char* path : {"radstat.ra0.behaviour", "mtk_ctrl.behaviour"})
    run("gwbox set companion " + std::string(path) + " " + behaviour);
}

static void change_something(int tick, bool long_run, soak_trouble* trouble) {
  if (tick % 7 == 3) toggle(kConsoleSwitch);
  if (tick % 20 == 15 || tick % 20 == 17) toggle(kLogSwitch);
  if (tick % 6 == 5) trouble->killed += kill_companion(static_cast<size_t>(tick / 6));
  if (tick % 25 == 1) toggle_hnc_init();
  if (tick % 13 == 6) controller_short(20);
  if (tick % (long_run ? 300 : 1000) == 30) {
    ++trouble->silent;
    controller_silent(1);
  }
  // When a restart ends band steering while a setting waits for its marker, all callers
  // wait ten seconds. A short run has no time for that.
  if (!long_run) write_file(kSteeringMarker, "");
  if (long_run && (tick % 3000 == 2000 || tick % 3000 == 2005))
    silence_companions(tick % 3000 == 2000);
}

void run_trouble(soak_client* client, int pace, bool long_run, const std::atomic<bool>* stop,
                 soak_trouble* trouble) {
  mkdir(kLogDirectory, 0755);
  toggle(kLogSwitch);
  for (int tick = 0; !*stop; ++tick) {
    change_something(tick, long_run, trouble);
    if (tick % pace == 0) next_lifecycle_request(client, trouble);
    check_log(trouble);
    cut_outputs();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  silence_companions(false);
  controller_silent(0);
}
