#include "commands/plan_command.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <cstdlib>

#include "base/files.h"
#include "base/report.h"
#include "client/base/text.h"
#include "commands/run.h"
#include "plan/rehearse.h"

// A descriptor for the box to read the file from, which may not be visible there; -1 without PATH.
// False after a report.
static bool lend_file(const std::string& path, int& fd) {
  fd = -1;
  if (path.empty()) return true;
  if (access(path.c_str(), R_OK) < 0) return report_errno(nullptr, "read %s", path.c_str());
  std::string text = file_read(path);
  fd = memfd_create("profile", 0);
  if (fd < 0 || write(fd, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    return report_errno(nullptr, "copy %s", path.c_str());
  }
  return true;
}

// The page goes to the file instead of the standard output.
static bool redirect_output(const std::string& path) {
  if (path.empty()) return true;
  int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0 || dup2(fd, 1) < 0) return report_errno(nullptr, "open %s", path.c_str());
  return true;
}

int plan_run(args a) {
  int profile_24 = -1, profile_5 = -1;
  if (a.payload.empty()) {
    report("plan needs a command: gwbox plan -- wificonf wlan_restart 1");
    return kExitUsage;
  }
  if (!lend_file(a.profile_24, profile_24) || !lend_file(a.profile_5, profile_5) ||
      !redirect_output(a.html)) {
    return kExitUsage;
  }
  std::vector<std::string> inside = {"gwbox", "rehearse", "--form",
                                     a.json           ? "json"
                                     : a.html.empty() ? "text"
                                                      : "html"};
  if (a.allow_outage) inside.push_back("--allow-outage");
  inside.insert(inside.end(), {"--profile24", std::to_string(profile_24), "--profile5",
                               std::to_string(profile_5), "--"});
  inside.insert(inside.end(), a.payload.begin(), a.payload.end());
  a.payload = inside;
  a.cold = true;
  a.companions = true;
  return run_box(a);
}

int plan_rehearse(const args& a) {
  plan_form form = a.form == "json"   ? plan_form::kJson
                   : a.form == "html" ? plan_form::kHtml
                                      : plan_form::kText;
  return rehearse(
      {a.payload, form, a.allow_outage, atoi(a.profile_24.c_str()), atoi(a.profile_5.c_str())});
}
