// What all companion processes share: the end by a signal, datagram sockets, records of what they
// were told.
//
// Every companion is this one program under a name of its own, so that tools which look for
// processes by name find it. It begins with companion_begin and then serves until a signal ends it:
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
  int signals;    // signalfd: SIGTERM, SIGINT, SIGHUP and those asked for
  bool ended;     // one of the first three came
  int signalled;  // the last of the others, 0: none since this was cleared
};

struct companion_datagram {
  std::string bytes;
  sockaddr_storage from;
  socklen_t from_size;
};

// MORE: signals besides those that end a companion.
companion companion_begin(std::initializer_list<int> more);

// Tells whoever started the box that this companion can be signalled and asked.
void companion_ready();

// Waits for a signal or the time; SECONDS below 0: for ever. False when it ended.
bool companion_pause(companion& self, double seconds);

// The same for seconds of the box's time, which may be paused, moved on or change its speed.
bool companion_wait(companion& self, double seconds);

// A UNIX datagram socket at that path; a socket left there by an earlier process is replaced.
// -1 after a message on standard error.
int companion_listen(const char* path);

// Removes that socket, unless another process has replaced it since.
void companion_unlisten(const char* path);

// Waits for the next datagram; false when the companion ended.
bool companion_receive(companion& self, int fd, companion_datagram& datagram);

void companion_answer(int fd, const companion_datagram& to, const std::string& bytes);

// Seconds since the box's start, and what the box's time is by now.
double companion_time();
double companion_box_time();

// Appends one line to the file, LINE with "time" in front of its members.
void companion_record(const char* path, const nlohmann::ordered_json& line);
