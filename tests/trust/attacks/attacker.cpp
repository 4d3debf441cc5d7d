#include "trust/attacks/attacker.h"

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/daemon.h"

static bool became_nobody() {
  return setgroups(0, nullptr) == 0 && setresgid(kNobody, kNobody, kNobody) == 0 &&
         setresuid(kNobody, kNobody, kNobody) == 0;
}

bool has_other_users() {
  const pid_t child = fork();
  if (child == 0) _exit(became_nobody() ? 0 : 1);
  return wait_for_end(child) == 0;
}

int start_as_nobody(const std::function<int()>& attack) {
  const pid_t child = fork();
  if (child != 0) return child;
  if (!became_nobody()) _exit(125);
  _exit(attack());
}

int as_nobody(const std::function<int()>& attack) {
  return wait_for_end(start_as_nobody(attack));
}

int sh_as_nobody(const char* command) {
  return as_nobody([command] {
    execl("/bin/sh", "sh", "-c", command, nullptr);
    return 127;
  });
}
