#include "trust/sweep.h"

#include <cstdlib>
#include <numeric>

#include "support/files.h"
#include "support/wire.h"
#include "trust/footprint.h"
#include "trust/heap_page.h"
#include "trust/profiles.h"

namespace {

// A failure to come: of a call or, if `heap` is set, of an allocation.
struct planned {
  injection call;
  int heap;
};

// An undisturbed run, and the state of the sweep.
struct course {
  const operation* op;
  tally* counts;
  profile_pair before;
  profile_pair after;
  answer usual;
  std::set<std::string> makes;  // files
  std::string interfaces;       // after its preparation or, if that is cheap, after the next call
  int calls;                    // made by the service's main thread
};

// The result of one run with a failure.
struct trial {
  bool hit;
  bool replaced;
  std::string failed;  // name of the call
  answer got;
  std::string what;
  footprint before;
  footprint now;
};

}  // namespace

// Set when check_next_call has just prepared the operation.
static bool is_prepared;

int total_injected(const tally& counts) {
  return std::accumulate(std::begin(counts.injected), std::end(counts.injected),
                         counts.allocations);
}

static void arm_planned(const planned& plan) {
  arm(plan.heap != 0 ? injection{} : plan.call);
  arm_heap(plan.call.where == role::kWorker ? HEAP_THREAD_OTHER : HEAP_THREAD_MAIN, plan.heap);
}

static trial run_trial(const course& run, const planned& plan) {
  trial result = {};
  if (!is_prepared) run.op->prepare();
  is_prepared = false;
  arm({});
  result.before = take_footprint();
  const int child = service_children();
  arm_planned(plan);
  result.got = serve(run.op->call);
  const outside_call* failed = injected();
  result.hit = plan.heap != 0 ? heap_failed() : failed != nullptr;
  arm_heap(0, 0);
  result.replaced = service_children() != child;
  if (failed != nullptr) {
    result.what = describe_failure(*failed, plan.call.choice);
    result.failed = failed->name;
  } else {
    result.what = "allocation " + std::to_string(plan.heap);
  }
  if (result.got.how == stand::kQuiet) result.now = take_footprint();
  return result;
}

static void complain(const course& run, const planned& plan, const std::string& what,
                     const std::string& promise) {
  const char* where = plan.call.where == role::kWorker ? " of the worker" : "";
  const int nth = plan.heap != 0 ? plan.heap : plan.call.nth;
  run.counts->broken.push_back(run.op->name + ", " + what + " (" + std::to_string(nth) + where +
                               "): " + promise);
}

// If the service's first call fails, it cannot tell the request's length and drops it.
static bool loses_request(const injection& where, const outside_call& call) {
  return where.nth == 1 && where.where == role::kServer && std::string(call.name) == "ioctl";
}

static void count_trial(const course& run, const planned& plan, const trial& one,
                        const outside_call* failed) {
  if (plan.heap != 0)
    ++run.counts->allocations;
  else
    ++run.counts->injected[static_cast<int>(failed->column)];
  run.counts->replaced += one.replaced;
  run.counts->unanswered += !one.got.came && !one.replaced;
}

static void check_footprint(const course& run, const planned& plan, const trial& one) {
  footprint before = one.before;
  before.files.insert(run.makes.begin(), run.makes.end());
  // A file that cannot be removed stays: that is the failure itself. When the close of a
  // pipe fails, the C library does not collect the command at its other end.
  if (one.failed == "unlink") before.files = one.now.files;
  if (one.failed == "close") before.children = one.now.children;
  const std::string left = one.replaced ? "" : what_is_left(before, one.now);
  if (!left.empty()) complain(run, plan, one.what, "left over: " + left);
  const std::string lock = held_lock();
  if (!lock.empty()) complain(run, plan, one.what, "still held: " + lock);
}

// Only memory that grows with every repetition is lost.
static void check_heap(const course& run, const planned& plan, const trial& one) {
  if (one.replaced || one.now.heap_blocks <= one.before.heap_blocks) return;
  long last = one.now.heap_blocks;
  for (int i = 0; i < 3; ++i) {
    const trial again = run_trial(run, plan);
    if (!again.hit || again.replaced || again.now.heap_blocks <= last) return;
    last = again.now.heap_blocks;
  }
  complain(run, plan, one.what, "memory grows each time");
}

static void check_profiles(const course& run, const planned& plan, const trial& one) {
  const profile_pair now = read_profiles();
  if (!is_whole(run.before.band24, run.after.band24, now.band24) ||
      !is_whole(run.before.band5, run.after.band5, now.band5)) {
    complain(run, plan, one.what, "the profile is neither the old nor the new one");
  }
  const std::string mirror24 = read_file("/tmp/mt76xx_24.dat.hnc");
  const std::string mirror5 = read_file("/tmp/mt76xx_5.dat.hnc");
  run.counts->mirror_torn += !is_whole(run.before.band24, run.after.band24, mirror24) ||
                             !is_whole(run.before.band5, run.after.band5, mirror5);
}

// Replaces a daemon that hangs or is gone.
static void start_anew(const course& run, const planned& plan, const trial& one, stand how) {
  complain(run, plan, one.what, how == stand::kHung ? "the daemon hangs" : "the daemon is gone");
  stop_traced();
  if (!start_daemon_traced()) exit(2);
}

static void check_interfaces(const course& run, const planned& plan, const trial& one) {
  if (run.op->sequence && interface_states() != run.interfaces)
    complain(run, plan, one.what, "the next sequence leads elsewhere");
}

// After an expensive operation, preparing the next trial is the next call: it shows that
// the locks are free and that the sequences still end where they always do.
static void check_next_call(const course& run, const planned& plan, const trial& one) {
  run.op->prepare();
  is_prepared = run.op->expensive;
  if (is_prepared) {
    check_interfaces(run, plan, one);
    return;
  }
  const answer next = serve_undisturbed(run.op->call);
  if (next.how != stand::kQuiet)
    start_anew(run, plan, one, next.how);
  else if (!next.came)
    complain(run, plan, one.what, "the next call is not answered");
  else if (next.code != run.usual.code)
    complain(run, plan, one.what, "the next call answers " + std::to_string(next.code));
  else
    check_interfaces(run, plan, one);
}

// False when the operation had no such call to fail.
static bool try_failure(const course& run, const planned& plan, int* choices) {
  const trial one = run_trial(run, plan);
  if (!one.hit) return false;
  const outside_call* failed = injected();
  if (choices != nullptr && failed != nullptr) *choices = failures_of(*failed);
  count_trial(run, plan, one, failed);
  if (one.got.how != stand::kQuiet) {
    start_anew(run, plan, one, one.got.how);
    return true;
  }
  const bool lost = one.replaced || (failed != nullptr && loses_request(plan.call, *failed));
  if (one.got.came == lost)
    complain(run, plan, one.what, lost ? "an answer to what was dropped" : "no answer");
  if (one.replaced && !run.op->controller) complain(run, plan, one.what, "the child ended");
  check_footprint(run, plan, one);
  check_profiles(run, plan, one);
  check_heap(run, plan, one);
  check_next_call(run, plan, one);
  return true;
}

// Each of the undisturbed run's calls must be there to fail again, with each of its
// errors. The length of a sequence's waits is chance, so their calls vary.
static void expect_hit(const course& run, const planned& plan, bool hit) {
  if (hit || run.op->sequence || plan.call.nth > run.calls) return;
  complain(run, plan, "nothing failed",
           "of its " + std::to_string(run.calls) + " calls this one was not made again");
}

static void sweep_all_calls(const course& run, role where) {
  bool more = true;
  for (int nth = 1; more; ++nth) {
    int choices = 1;
    for (int choice = 0; choice < choices; ++choice) {
      const planned plan = {{where, nth, choice}, 0};
      const bool hit = try_failure(run, plan, &choices);
      expect_hit(run, plan, hit);
      more = more && (hit || choice > 0);
    }
  }
}

// A different error each turn.
static void sweep_each_call_once(const course& run, role where, int turn) {
  bool hit = true;
  for (int nth = 1; hit; ++nth) {
    const planned plan = {{where, nth, turn + nth}, 0};
    hit = try_failure(run, plan, nullptr);
    expect_hit(run, plan, hit);
  }
}

// One call of each class; the call and the error differ each turn.
static void sweep_sample(const course& run, role where, int turn) {
  run.op->prepare();
  serve_undisturbed(run.op->call);
  is_prepared = false;
  const std::vector<const outside_call*> calls = calls_made(where);
  for (int column = 0; column < static_cast<int>(call_class::kCount); ++column) {
    std::vector<int> places;
    for (size_t i = 0; i < calls.size(); ++i) {
      if (static_cast<int>(calls[i]->column) == column) places.push_back(static_cast<int>(i));
    }
    if (places.empty()) continue;
    const int place = places[static_cast<size_t>(turn) % places.size()];
    try_failure(run, {{where, place + 1, turn}, 0}, nullptr);
  }
}

static void sweep_allocations(const course& run, role where, bool once) {
  for (int nth = 1; try_failure(run, {{where, 0, 0}, nth}, nullptr) && !once; ++nth) {
  }
}

static void learn(course* run) {
  // The first run fills stdio buffers and time zone tables.
  for (int i = 0; i < 2; ++i) {
    run->op->prepare();
    run->interfaces = interface_states();
    run->before = read_profiles();
    const footprint before = take_footprint();
    run->usual = serve_undisturbed(run->op->call);
    run->calls = static_cast<int>(calls_made(role::kServer).size());
    if (!run->op->expensive) run->interfaces = interface_states();
    run->after = read_profiles();
    for (const std::string& file : take_footprint().files) {
      if (before.files.count(file) == 0) run->makes.insert(file);
    }
  }
}

static void sweep_calls(const course& run, role where, extent how_much, int turn) {
  switch (how_much) {
    case extent::kAll:
      sweep_all_calls(run, where);
      return;
    case extent::kOnce:
      sweep_each_call_once(run, where, turn);
      return;
    case extent::kSample:
      sweep_sample(run, where, turn);
      return;
  }
}

tally sweep_operation(const operation& op, extent how_much, int turn) {
  tally counts = {};
  counts.name = op.name;
  is_prepared = false;
  course run = {&op, &counts, {}, {}, {}, {}, "", 0};
  learn(&run);
  counts.code = run.usual.code;
  for (const role where : {role::kServer, role::kWorker}) {
    if (where == role::kWorker && !op.sequence) continue;
    sweep_calls(run, where, how_much, turn);
    sweep_allocations(run, where, how_much == extent::kSample);
  }
  return counts;
}
