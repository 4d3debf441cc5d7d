#include "support/every_procedure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <sstream>

#include "support/files.h"
#include "support/lifecycle.h"
#include "support/stations.h"

static std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

std::string json_member(const std::string& line, const std::string& name) {
  const std::string start = "\"" + name + "\":";
  size_t at = line.find(start);
  if (at == line.npos) return "";
  at += start.size();
  if (line[at] != '"') return line.substr(at, line.find_first_of(",}", at) - at);
  std::string text;
  for (++at; line[at] != '"'; ++at) {
    if (line[at] == '\\') ++at;
    text += line[at];
  }
  return text;
}

// Procedures that change which radios there are. They are called last.
static bool takes_radios_down(const std::string& description) {
  static const char* const kNames[] = {"wlan_load",
                                       "wlan_init",
                                       "wlan_reset",
                                       "wlan_restart",
                                       "wlan_restart_all",
                                       "wlan_set_prek_operation",
                                       "wlan_undo_prek_operation"};
  const std::string name = json_member(description, "procedure");
  return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
}

static std::vector<std::string> descriptions() {
  std::vector<std::string> all =
      lines_of(run("for name in $(wificonf list | awk '{print $2}'); do"
                   " wificonf --json describe $name; done"));
  std::stable_partition(all.begin(), all.end(),
                        [](const std::string& one) { return !takes_radios_down(one); });
  return all;
}

// The command line of the description's example, with --json.
static std::string command_of(const std::string& description) {
  return "wificonf --json" + json_member(description, "example").substr(strlen("wificonf"));
}

std::vector<procedure_call> call_every_procedure(const std::function<void()>& ready) {
  beacon_at_once();
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  ready();
  std::string script;
  std::vector<procedure_call> calls;
  for (const std::string& description : descriptions()) {
    calls.push_back({json_member(description, "procedure"), ""});
    script += command_of(description) + " || case $? in 1|4|5) ;; *) echo ;; esac\n";
  }
  write_file("/tmp/every", script);
  const std::vector<std::string> answers = lines_of(run("sh /tmp/every 2>/tmp/every.err"));
  EXPECT_EQ(answers.size(), calls.size());
  std::string silent;
  for (size_t i = 0; i < std::min(answers.size(), calls.size()); ++i) {
    calls[i].answer = answers[i];
    if (json_member(answers[i], "procedure") != calls[i].name) silent += " " + calls[i].name;
  }
  EXPECT_EQ(silent, "") << read_file("/tmp/every.err");
  return calls;
}
