#pragma once

#include <cstddef>

// Client of the daemons that answer one datagram with one datagram: radio
// statistics, and driver control (steer/events.h).
//
// A client is bound to /tmp/rad_ctrl_<process id>, so there is one at a time: a
// second one takes the path over, and the first gets no more replies.

struct rad_ctrl;

// How long a request waits for its reply.
constexpr int kReplyTimeoutMs = 2000;

// Binds a client and connects it to the daemon that listens on `daemon_path`.
// Null when that fails; only a failed bind is reported. rad_ctrl_close ends it.
[[nodiscard]] rad_ctrl* rad_ctrl_open(const char* daemon_path);

// Sends a request, waiting 2 s at most for room in the daemon's queue, and waits
// for one reply, of which at most `*reply_len` bytes are taken; `*reply_len`
// receives how many. What arrived before the request is not taken for its reply.
// Returns 0, -1 when the request could not be sent or the reply not received, or
// -2 when none came in time.
[[nodiscard]] int rad_ctrl_request(rad_ctrl* client, const void* request, size_t request_len,
                                   void* reply, size_t* reply_len);

// Null is allowed.
void rad_ctrl_close(rad_ctrl* client);

// One request to the statistics daemon of a radio, with the last good reply
// kept: it stands in for a reply of zeros only, and for the reply of a daemon
// that cannot be reached. `reply` takes 192 bytes, whatever `*reply_len` says.
// A reply that is short leaves the rest of `reply`, and of what is kept, as it
// was. Returns what rad_ctrl_request does, or -1 when the daemon cannot be
// reached, which is reported.
//
// An index up to 7 shares the kept reply of the 2.4 GHz radio, others that of
// the 5 GHz radio. For one thread only: the RPC thread.
[[nodiscard]] int rad_ctrl_request_buffered(int radio_index, const void* request,
                                            size_t request_len, void* reply, size_t* reply_len);

// Makes the kept reply of a radio one whose fields all read as -1.
void rad_ctrl_forget(int radio_index);
