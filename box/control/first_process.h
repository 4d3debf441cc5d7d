// The box's first process (pid 1 inside): builds the box, starts what belongs in it, then
// supervises: trapped calls, control socket, children, end.
#pragma once

#include <sys/types.h>
#include <cstdint>

#include "base/board.h"
#include "host/payload.h"
#include "host/sandbox.h"
#include "scenario/document.h"

struct box_plan {
  const board* hardware;
  scenario around;
  sandbox_plan sandbox;
  payload_plan payload;
  bool user_namespace;  // the box is in a new one
  uid_t uid;            // of whoever started the box
  gid_t gid;
  bool portmap;
  bool companions;  // HncInit and the HNC listener run from the start
  bool cold;        // no driver is loaded at the start
  int log_fd;       // journal outside, or -1
  int link;         // to `gwbox run`, see run_link.h
  int name;         // of reach_take_name, or -1
  int64_t start_us;
};

// Runs as the first process of new namespaces. The result is what the box ends with: the
// payload's exit status, 128+N for its signal N, or 125 when the box could not be built.
[[nodiscard]] int box_main(const box_plan& plan);
