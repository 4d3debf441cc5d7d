#pragma once

#include <cstddef>
#include <cstdint>

// Steer events, as the driver control daemon sends them and as the protocol's clients get
// them. Numbers are in host byte order.

struct steer_event_request {
  uint32_t command;
  uint32_t reserved[2];
  uint32_t radio;  // number of its first interface
};
static_assert(offsetof(steer_event_request, command) == 0);
static_assert(offsetof(steer_event_request, radio) == 12);
static_assert(sizeof(steer_event_request) == 16);

constexpr uint32_t kGetSteerEvents = 1;

// Types and codes are the daemon's and are passed on unchanged.
struct control_event {
  uint8_t type;
  int8_t code;
  uint8_t mac[6];
  uint32_t time;  // seconds since the epoch
};
static_assert(offsetof(control_event, code) == 1);
static_assert(offsetof(control_event, mac) == 2);
static_assert(offsetof(control_event, time) == 8);
static_assert(sizeof(control_event) == 12);

constexpr unsigned kSteerEvents = 32;

struct control_reply {
  uint32_t status;
  uint32_t reserved[2];
  control_event events[kSteerEvents];
  uint8_t count;  // includes events that found no room
  uint8_t padding[7];
};
static_assert(offsetof(control_reply, status) == 0);
static_assert(offsetof(control_reply, events) == 12);
static_assert(offsetof(control_reply, count) == 396);
static_assert(sizeof(control_reply) == 404);

// The daemon's status when it could not deliver the events; any other means success.
constexpr uint32_t kEventsNotDelivered = 4;

// One event of a client's report.
struct steer_event {
  uint32_t type;
  char mac[17];  // "02:00:5e:00:00:01", without a terminator
  char padding[3];
  uint32_t time;  // seconds since the epoch
  char code[8];   // a number as text, NUL-terminated
};
static_assert(offsetof(steer_event, type) == 0);
static_assert(offsetof(steer_event, mac) == 4);
static_assert(offsetof(steer_event, time) == 24);
static_assert(offsetof(steer_event, code) == 28);
static_assert(sizeof(steer_event) == 36);

struct steer_event_report {
  steer_event events[kSteerEvents];
  uint32_t count;  // the daemon's count, which may exceed the events here
};
static_assert(offsetof(steer_event_report, count) == 1152);
static_assert(sizeof(steer_event_report) == 1156);
