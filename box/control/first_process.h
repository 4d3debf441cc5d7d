// The box's first process (pid 1 inside). It builds the box, starts the services and the payload,
// and then serves trapped calls and the control socket until the box ends.
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
  int log_fd;       // copy of the journal outside, or -1
  int link;         // to `gwbox run`, see run_link.h
  int name;         // from reach_take_name, or -1
  int64_t start_us;
};

// Runs as the first process of new namespaces. Returns the box's exit status: the payload's, 128+N
// if signal N ended the payload or the box, or 125 if the box could not be built.
[[nodiscard]] int box_main(const box_plan& plan);
