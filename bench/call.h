#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

// Prepared ONC RPC calls over UDP, the same for both sides of a comparison. The datagrams are
// built before timing starts, so a call is one send and one recv.

// The maximum number of argument variants that a side uses in turn.
enum { kVariantsMax = 4, kDatagramMax = 1024 };

// One side of a comparison: a procedure of one server.
struct side {
  int sock;  // connected
  int variants;
  int next;
  uint32_t xid;
  size_t length[kVariantsMax];
  uint8_t datagram[kVariantsMax][kDatagramMax];
};

// Opens a side from "PORT:PROGRAM:PROCEDURE:HEX[,HEX...]". Each HEX is an encoded argument; the
// calls use them in turn. Ends the process on failure.
void side_open(struct side* side, const char* text);

// Sends the next call. False if nobody listens.
bool side_send(struct side* side);

// Waits `milliseconds` for the answer. False if there is none. Ends the process if the answer
// is not a success, or if its first result word is not 0.
bool side_receive(struct side* side, int milliseconds);

// Sends and waits up to ten seconds. Ends the process if there is no answer.
void side_call(struct side* side);

// Time on the monotonic clock.
double microseconds(void);
