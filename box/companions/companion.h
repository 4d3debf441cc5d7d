// What all companion processes share: ending on a signal, datagram sockets, records of what they
// receive.
//
// Every companion is this one program under its own name, so that tools which look for processes
// by name find it. It calls companion_begin and then serves until a signal ends it:
//
//   companion self = companion_begin({});
//   int fd = companion_listen("/var/run/dcsD");
//   companion_ready();
//   while (companion_receive(self, fd, datagram)) ...
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>

struct companion {
  int signals;    // signalfd: SIGTERM, SIGINT, SIGHUP and the others asked for
  bool ended;     // one of the first three came
  int signalled;  // the last of the others, 0: none since this was cleared
};

struct companion_datagram {
  std::string bytes;
  sockaddr_storage from;
  socklen_t from_size;
};

// MORE: signals to watch besides those that end a companion.
companion companion_begin(std::initializer_list<int> more);

// Tells whoever started the box that this companion can be signalled and asked.
void companion_ready();

// Waits until a signal arrives or SECONDS pass; below 0 there is no limit. False once a signal has
// ended the companion.
bool companion_pause(companion& self, double seconds);

// Waits for SECONDS of the box's time, which may be paused, advanced or change speed; below 0 as
// companion_pause. False once a signal has ended the companion.
bool companion_wait(companion& self, double seconds);

// A UNIX datagram socket at that path; a socket left there by an earlier process is replaced.
// -1 after a message on standard error.
int companion_listen(const char* path);

// Removes that socket, unless another process has replaced it since.
void companion_unlisten(const char* path);

// Waits for the next datagram; false once a signal has ended the companion.
bool companion_receive(companion& self, int fd, companion_datagram& datagram);

void companion_answer(int fd, const companion_datagram& to, const std::string& bytes);

// Seconds since the box's start: real ones, and those of the box's time.
double companion_time();
double companion_box_time();

// Appends LINE to the file as one line, with "time" before its own members.
void companion_record(const char* path, const nlohmann::ordered_json& line);
