#include "commands/log.h"

#include <cstdio>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "base/report.h"
#include "control/follow.h"
#include "control/reach.h"

using json = nlohmann::ordered_json;

// Members that have their own place in a readable line; the others are printed as name=value.
static constexpr const char* kPlaced[] = {
    "seq",      "time",     "box_time", "pid",    "comm",     "interface", "request", "name",
    "sub",      "object",   "bytes",    "text",   "text_hex", "length",    "result",  "status",
    "injected", "delay_ms", "error",    "effect", "what",     "call",      "xid"};

static bool is_placed(const std::string& name) {
  return std::find(std::begin(kPlaced), std::end(kPlaced), name) != std::end(kPlaced);
}

static std::string text_of(const json& entry, const char* name) {
  return entry.value(name, std::string());
}

static std::string other_members(const json& entry) {
  std::string text;
  for (const auto& [name, value] : entry.items()) {
    if (!is_placed(name) && value.is_string()) text += " " + name + "=" + value.get<std::string>();
  }
  return text;
}

// "query survey [13163]", "set SSID=attic", "steer mac=... action=2", "vlan device=eth0".
static std::string what_was_asked(const json& entry) {
  std::string text = text_of(entry, "name");
  if (text == "unknown") text += " " + text_of(entry, "request");
  if (entry.contains("object")) text += " " + text_of(entry, "object");
  if (entry.contains("sub")) {
    if (!entry.contains("object")) text += " " + text_of(entry, "sub");
    text += " [" + std::to_string(entry.value("length", 0)) + "]";
  }
  if (entry.contains("text")) text += " " + text_of(entry, "text");
  text += other_members(entry);
  text += " -> " + (entry.contains("error") ? text_of(entry, "error") : "ok");
  if (entry.value("injected", false)) text += " (injected)";
  if (entry.contains("delay_ms")) {
    text += " after " + std::to_string(entry.value("delay_ms", 0)) + " ms";
  }
  return text;
}

// "station leaves mac=... why=off air", "key file=... key=SSID1 before=... after=...".
static std::string what_happened(const json& entry) {
  std::string text = text_of(entry, "effect");
  if (entry.contains("what")) text += " " + text_of(entry, "what");
  text += other_members(entry);
  if (entry.contains("status")) text += " -> status " + std::to_string(entry.value("status", 0));
  return text;
}

// "iwpriv[7] for wlan_restart"; empty if nobody is known.
static std::string on_whose_behalf(const json& entry) {
  std::string text, call = text_of(entry, "call");
  if (!text_of(entry, "comm").empty()) {
    text = text_of(entry, "comm") + "[" + std::to_string(entry.value("pid", 0)) + "]";
  }
  if (!call.empty()) text += (text.empty() ? "for " : " for ") + call;
  return text;
}

// "  0.012345 ra0 set LEDEnable=1 -> ok  (iwpriv[7])"
static std::string readable(const std::string& line) {
  json entry = json::parse(line, nullptr, false);
  if (!entry.is_object()) return line;
  char time[32];
  snprintf(time, sizeof time, "%10.6f ", entry.value("time", 0.0));
  std::string text = time, interface = text_of(entry, "interface"), who = on_whose_behalf(entry);
  text += interface.empty() ? "" : interface + " ";
  text += entry.contains("effect") ? what_happened(entry) : what_was_asked(entry);
  return who.empty() ? text : text + "  (" + who + ")";
}

// Control bytes of a caller's text must not reach the terminal.
static std::string printable(std::string text) {
  for (char& byte : text) {
    if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) byte = '?';
  }
  return text;
}

struct printing {
  bool as_json;
};

static bool print_line(const std::string& line, void* context) {
  bool as_json = static_cast<printing*>(context)->as_json;
  puts((as_json ? line : printable(readable(line))).c_str());
  fflush(stdout);
  return ferror(stdout) == 0;
}

int log_print(const std::string& box, bool follow, bool as_json) {
  std::string root;
  printing how = {as_json};
  if (!reach_root(box, root)) return kExitFailed;
  if (!follow) return follow_journal(root, 0, print_line, &how);
  int status = follow_journal(root, kFollowForever, print_line, &how);
  if (status == 0 && !ferror(stdout)) report("the box has ended");
  return ferror(stdout) ? kExitFailed : status;
}
