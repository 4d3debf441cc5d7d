#include "plan/rehearse.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <nlohmann/json.hpp>
#include <sstream>

#include "base/files.h"
#include "base/journal.h"
#include "base/report.h"
#include "control/ask.h"
#include "host/profiles.h"
#include "plan/facts.h"

using json = nlohmann::ordered_json;

static constexpr const char* kErrors = "/run/gwbox/wificonfd.err";
static constexpr const char* kOutput = "/run/gwbox/wificonfd.out";
static constexpr int kQuietSeconds = 120;
static constexpr double kReturnMax = 3600;  // whoever stays away longer does not come back

// Starts a command with its standard output in place of FD 1. The pid, or -1 after a report.
static pid_t start(const std::vector<std::string>& words, const char* output, const char* errors) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (output) {
    posix_spawn_file_actions_addopen(&actions, 1, output, O_WRONLY | O_CREAT | O_APPEND, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, errors, O_WRONLY | O_CREAT | O_APPEND, 0644);
  } else {
    posix_spawn_file_actions_adddup2(&actions, 2, 1);  // the plan has standard output for itself
  }
  std::vector<char*> list;
  for (const std::string& word : words)
    list.push_back(const_cast<char*>(word.c_str()));
  list.push_back(nullptr);
  pid_t pid = -1;
  int error = posix_spawnp(&pid, list[0], &actions, nullptr, list.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error == 0) return pid;
  errno = error;
  report_errno(nullptr, "run %s", words[0].c_str());
  return -1;
}

static int run_words(const std::vector<std::string>& words, const char* output) {
  pid_t pid = start(words, output, output);
  int status = 0;
  if (pid < 0) return 127;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

static bool wait_until_quiet() {
  std::string missing;
  std::vector<std::string> words = {"wait", std::to_string(kQuietSeconds), "quiet"};
  if (control_ask_patiently("", words, kQuietSeconds, missing) != 0) return false;
  if (missing.empty()) return true;
  return report("after %d seconds %s", kQuietSeconds, missing.c_str()), false;
}

static bool put_profile(int fd, const char* path) {
  return fd < 0 || file_write(path, file_read("/proc/self/fd/" + std::to_string(fd)));
}

static bool call(const std::vector<std::string>& words) {
  std::vector<std::string> whole = {"wificonf"};
  whole.insert(whole.end(), words.begin(), words.end());
  if (run_words(whole, kOutput) == 0) return wait_until_quiet();
  return report("%s failed: %s", words[0].c_str(), file_read(kErrors).c_str()), false;
}

// The daemon and both radios.
static bool bring_up(const rehearsal& r) {
  if (!put_profile(r.profile_24, kProfile24) || !put_profile(r.profile_5, kProfile5)) return false;
  return start({"wificonfd"}, kOutput, kErrors) > 0 && call({"ping", "--wait", "10"}) &&
         call({"wlan_load", "1"}) && call({"wlan_init"});
}

static json status_now() {
  std::string answer;
  if (control_ask("", {"status"}, answer) != 0) return {};
  return json::parse(answer, nullptr, false);
}

// The time until the last of the stations that stay away comes back; 0: none does.
static double longest_return() {
  double longest = 0;
  json status = status_now();
  for (const json& station : status["stations"]) {
    auto returns = station.find("returns_in");
    if (returns == station.end() || !returns->is_number()) continue;
    double seconds = returns->get<double>();
    if (seconds > longest && seconds <= kReturnMax) longest = seconds;
  }
  return longest;
}

// What the stations do later happens at once.
static bool let_stations_return() {
  double seconds = longest_return();
  return seconds == 0 || control_tell("", {"advance", std::to_string(seconds + 0.001)}) == 0;
}

// The daemon's lines about errors, without escape sequences.
static std::vector<std::string> error_lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream rest(text);
  for (std::string line; std::getline(rest, line);) {
    std::string plain;
    for (size_t i = 0; i < line.size(); ++i) {
      if (line[i] == '\x1b') {
        i = line.find('m', i);
        if (i == std::string::npos) break;
      } else {
        plain += line[i];
      }
    }
    if (!plain.empty()) lines.push_back(plain);
  }
  return lines;
}

static bool carry_out(const rehearsal& r, plan& p) {
  std::string pending;
  size_t journal_before = file_read(kJournalPath).size(), errors_before = file_read(kErrors).size();
  p.status = run_words(r.command, nullptr);
  if (!wait_until_quiet() || !let_stations_return()) return false;
  facts_add(p, file_read(kJournalPath).substr(journal_before));
  if (control_ask("", {"pending"}, pending) != 0) return false;
  facts_mark_pending(p, pending);
  p.output = error_lines(file_read(kErrors).substr(errors_before));
  return true;
}

static std::string in_form(const plan& p, plan_form form) {
  switch (form) {
    case plan_form::kText:
      return plan_text(p);
    case plan_form::kJson:
      return plan_json(p);
    case plan_form::kHtml:
      return plan_html(p);
  }
  return "";
}

int rehearse(const rehearsal& r) {
  plan p = {};
  p.command = r.command;
  if (!bring_up(r)) return kExitBoxFailed;
  json status = status_now();
  if (!status.is_object()) return kExitBoxFailed;
  p.board = status.value("board", "");
  p.scenario = status.value("scenario", "");
  if (!carry_out(r, p)) return kExitBoxFailed;
  fputs(in_form(p, r.form).c_str(), stdout);
  fflush(stdout);
  if (p.status != 0) return kExitCommand;
  return plan_loses_air(p) && !r.allow_outage ? kExitOutage : 0;
}
