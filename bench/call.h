#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

// Prepared ONC RPC calls over UDP, the same for both sides of a comparison: the
// datagrams are made before anything is timed, and a call is one send, one recv.

// Most argument variants that one side takes in turn.
enum { kVariantsMax = 4, kDatagramMax = 1024 };

// One side: a procedure of one server.
struct side {
  int sock;  // connected
  int variants;
  int next;
  uint32_t xid;
  size_t length[kVariantsMax];
  uint8_t datagram[kVariantsMax][kDatagramMax];
};

// Makes a side of "PORT:PROGRAM:PROCEDURE:HEX[,HEX...]"; each HEX is an encoded
// argument, and the calls take them in turn. Ends the process when it cannot.
void side_open(struct side* side, const char* text);

// Sends the next call. False where nobody listens.
bool side_send(struct side* side);

// Waits `milliseconds` for the answer. False when there is none. Ends the process
// for an answer that is no success, its first result word included.
bool side_receive(struct side* side, int milliseconds);

// Both. Waits ten seconds; ends the process when there is no answer.
void side_call(struct side* side);

// Of the monotonic clock.
double microseconds(void);
