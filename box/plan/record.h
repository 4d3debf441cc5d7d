// What a command did to a gateway, as `gwbox plan` tells it. All of it comes from the journal, from
// what the driver does not do yet, and from the daemon's own output.
#pragma once

#include <string>
#include <vector>

// A value in a profile.
struct plan_setting {
  std::string file, key;
  int field;  // of a list, from 0; -1: the whole value
  bool had, has;
  std::string before, after;
  bool secret;
  bool is_pending;        // only after a restart of INTERFACE's radio
  std::string interface;  // ra0 or ra8
};

// A BSS that stopped beaconing. Times are of the box, in seconds since the command began.
struct plan_outage {
  std::string interface, ssid;
  double from;
  double seconds;  // below 0: it is still off air
};

// A station that lost its BSS.
struct plan_station {
  std::string mac, interface, why;
  double from;
  std::string back_on;  // empty: it has not come back
  double seconds;       // until then
};

// Something that happened COUNT times in a row or not, and which call was the cause.
struct plan_line {
  std::string text, call;
  int count;
  bool failed;
};

struct plan {
  std::string board, scenario;
  std::vector<std::string> command;
  int status;  // of the command
  std::vector<plan_setting> settings;
  std::vector<plan_outage> outages;
  std::vector<plan_station> stations;
  std::vector<plan_line> requests, commands, modules, companions, files, messages;
  std::vector<std::string> output;  // the daemon's lines about errors
};

// Whether a BSS or a station lost the air.
bool plan_loses_air(const plan& p);

bool plan_did_nothing(const plan& p);

// The first words of every plan: what is a model, what is assumed, and what was really run.
std::string plan_caveat(const plan& p);

// The three forms.
std::string plan_text(const plan& p);
std::string plan_json(const plan& p);
std::string plan_html(const plan& p);
