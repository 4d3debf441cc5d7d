#pragma once

#include <cstddef>

// Client of the daemons that answer one datagram with one datagram: radio statistics, and
// driver control (steer/events.h).
//
// A client is bound to /tmp/rad_ctrl_<process id>, so only one can exist at a time: a
// second takes the path over, and the first gets no more replies.

struct rad_ctrl;

constexpr int kReplyTimeoutMs = 2000;

// Binds a client and connects it to the daemon that listens on `daemon_path`. Null on
// failure; only a failed bind is reported. Release with rad_ctrl_close.
[[nodiscard]] rad_ctrl* rad_ctrl_open(const char* daemon_path);

// Sends a request and waits for one reply, at most 2 s for each. Datagrams that arrived
// before the request are dropped. At most `*reply_len` bytes are copied, and `*reply_len`
// receives how many. Returns 0, -1 when sending or receiving failed, or -2 when no reply
// came in time.
[[nodiscard]] int rad_ctrl_request(rad_ctrl* client, const void* request, size_t request_len,
                                   void* reply, size_t* reply_len);

// `client` may be null.
void rad_ctrl_close(rad_ctrl* client);

// Sends one request to a radio's statistics daemon and keeps the last good reply. That
// one is used when the daemon answers zeros or cannot be reached. `reply` takes 192
// bytes, whatever `*reply_len` says. A short reply leaves the rest of `reply` and of the
// kept one unchanged. Returns as rad_ctrl_request, or -1, reported, when the daemon
// cannot be reached.
//
// Indexes up to 7 share the kept reply of the 2.4 GHz radio, others that of the 5 GHz
// radio. RPC thread only.
[[nodiscard]] int rad_ctrl_request_buffered(int radio_index, const void* request,
                                            size_t request_len, void* reply, size_t* reply_len);

// Sets all fields of a radio's kept reply to -1.
void rad_ctrl_forget(int radio_index);
