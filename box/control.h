// The control socket of a box, through which commands inside it speak to its first process.
//
// One message each way: "fail WHAT HOW COUNT" or "fail clear" is answered with "ok" or with what
// was wrong.
#pragma once

#include <string>
#include <vector>

#include "faults.h"

constexpr const char* CONTROL_PATH = "/run/gwbox/control";  // inside the box

// Server side. Returns the listening descriptor, or -1 after a report.
[[nodiscard]] int control_listen();

// Accepts one client of LISTENER; its descriptor, or -1 when there is none after all.
int control_accept(int listener);

// Reads the client's message, acts on FAULTS, answers and closes CLIENT.
void control_serve(int client, std::vector<fault_rule>& faults);

// Client side: `gwbox fail`. HOW empty: WHAT must be "clear". Returns the exit status.
int control_fail(const std::string& what, const std::string& how, int count);
