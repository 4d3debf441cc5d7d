#include "control/start.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

#include "base/report.h"
#include "host/namespaces.h"
#include "host/payload.h"
#include "trap/filter.h"

static bool start_services(box_start& start) {
  const box_plan& plan = *start.plan;
  if ((plan.portmap && !portmap_start(start.portmapper)) ||
      (plan.companions && !companions_start(start.starting)))
    return false;
  if (plan.portmap && !portmap_await(start.portmapper)) return false;
  return !plan.companions || companions_await(start.starting);
}

static void tell(const box_start& start, start_step step) {
  static_cast<void>(!write(start.tell, &step, sizeof step));
}

static bool start_payload(box_start& start) {
  char go = 0;
  if (read(start.proceed, &go, 1) != 1) return false;
  start.payload = payload_start(start.plan->payload);
  return start.payload > 0;
}

static void* run(void* context) {
  box_start& start = *static_cast<box_start*>(context);
  int listener = filter_install({namespaces_have_root_alone()});
  bool installed = write(start.filter, &listener, sizeof listener) == sizeof listener;
  if (!installed || listener < 0 || !start_services(start)) {
    tell(start, start_step::kFailed);
    return nullptr;
  }
  tell(start, start_step::kServices);
  tell(start, start_payload(start) ? start_step::kPayload : start_step::kFailed);
  return nullptr;
}

bool start_begin(box_start& start, const box_plan& plan, int& listener) {
  int filter[2], steps[2], proceed[2];
  if (pipe2(filter, O_CLOEXEC) < 0 || pipe2(steps, O_CLOEXEC) < 0 ||
      pipe2(proceed, O_CLOEXEC) < 0) {
    return report_errno(nullptr, "make a pipe");
  }
  start = {&plan, steps[0], steps[1], proceed[0], proceed[1], filter[1], {}, {}, 0};
  pthread_t thread;
  if (pthread_create(&thread, nullptr, run, &start) != 0) {
    return report_errno(nullptr, "start a thread");
  }
  pthread_detach(thread);
  bool told = read(filter[0], &listener, sizeof listener) == sizeof listener;
  close(filter[0]);
  close(filter[1]);
  return told && listener >= 0;
}

bool start_is_waiting(const box_start& start) {
  pollfd steps = {start.steps, POLLIN, 0};
  return poll(&steps, 1, 0) > 0;
}

start_step start_step_done(box_start& start) {
  start_step step = start_step::kFailed;
  if (read(start.steps, &step, sizeof step) != sizeof step) step = start_step::kFailed;
  if (step == start_step::kServices) return step;
  for (int fd : {start.steps, start.tell, start.proceed, start.go_on})
    close(fd);
  start.steps = -1;
  return step;
}

void start_go_on(box_start& start) {
  static_cast<void>(!write(start.go_on, "+", 1));
}
