#include "trust/start_up.h"

#include <signal.h>
#include <sys/wait.h>

#include <cerrno>

#include "support/files.h"
#include "trust/heap_page.h"

static constexpr double kStartPatience = 10;

static void arm_failure(role where, int nth, int choice, int heap) {
  arm({where, nth, choice});
  arm_heap(HEAP_THREAD_MAIN, heap);
}

static void note(tally* counts, const std::string& what, const std::string& promise) {
  counts->broken.push_back(counts->name + ", " + what + ": " + promise);
}

static void judge(tally* counts, const std::string& what, stand how) {
  arm_failure(role::kServer, 0, 0, 0);
  counts->replaced += service_children() > 1;
  if (how == stand::kHung) note(counts, what, "the daemon hangs");
  if (how == stand::kEnded) {
    ++counts->ended;
    if (!WIFEXITED(supervisor_status())) note(counts, what, "the supervisor died of a signal");
  }
  if (how == stand::kQuiet && !answers_null()) note(counts, what, "the next call is not answered");
}

static stand begin() {
  start_daemon_process();
  return run_until_quiet(kStartPatience);
}

static stand begin_anew() {
  stop_traced();
  arm_failure(role::kServer, 0, 0, 0);
  return begin();
}

// Kills the child and lets the supervisor react.
static stand lose_child() {
  kill(service_pid(), SIGKILL);
  wake();
  return run_until_quiet(kStartPatience);
}

static bool try_start(tally* counts, role where, bool later, int nth, int choice, int heap,
                      int* choices) {
  stop_traced();
  if (later && begin_anew() != stand::kQuiet) note(counts, "no failure", "it does not start");
  arm_failure(where, nth, choice, heap);
  const stand how = later ? lose_child() : begin();
  const outside_call* failed = injected();
  if (heap != 0 ? !heap_failed() : failed == nullptr) return false;
  if (heap != 0)
    ++counts->allocations;
  else
    ++counts->injected[static_cast<int>(failed->column)];
  if (choices != nullptr && failed != nullptr) *choices = failures_of(*failed);
  judge(counts,
        failed != nullptr ? describe_failure(*failed, choice) + " (" + std::to_string(nth) + ")"
                          : "allocation " + std::to_string(heap),
        how);
  return true;
}

static tally sweep_start(const char* name, role where, bool later, extent how_much) {
  tally counts = {};
  counts.name = name;
  bool more = true;
  for (int nth = 1; more; ++nth) {
    int choices = 1;
    for (int choice = 0; more && choice < choices; ++choice) {
      more = try_start(&counts, where, later, nth, choice, 0, &choices);
      if (how_much != extent::kAll) break;
    }
  }
  return counts;
}

static tally sweep_heap(extent how_much) {
  tally counts = {};
  counts.name = "start-up, memory";
  for (int nth = 1; try_start(&counts, role::kServer, false, 0, 0, nth, nullptr); ++nth) {
    if (how_much == extent::kSample && nth == 3) break;
  }
  return counts;
}

// An interrupted wait goes on. A failed one ends the loop and, with status 0, the daemon:
// kept on purpose.
static tally sweep_wait() {
  tally counts = {};
  counts.name = "wait for requests";
  for (const int error : {EINTR, ENOMEM}) {
    if (begin_anew() != stand::kQuiet) note(&counts, "no failure", "it does not start");
    wake(error);
    const stand how = run_until_quiet(kStartPatience);
    ++counts.injected[static_cast<int>(call_class::kReceive)];
    judge(&counts, "poll " + std::to_string(error), how);
    if ((how == stand::kEnded) != (error == ENOMEM)) note(&counts, "poll", "unexpected end");
  }
  return counts;
}

std::vector<tally> sweep_start_up(extent how_much) {
  std::vector<tally> all = {
      sweep_start("start-up, supervisor", role::kSupervisor, false, how_much),
      sweep_start("start-up, service child", role::kServer, false, how_much),
      sweep_start("supervisor of a dead child", role::kSupervisor, true, how_much),
      sweep_heap(how_much),
      sweep_wait(),
  };
  if (begin_anew() != stand::kQuiet) note(&all.back(), "afterwards", "it does not start");
  stop_traced();
  return all;
}
