// One self-contained page: a time line of who was off air, and the lists below it.
#include <algorithm>

#include "base/columns.h"
#include "client/base/text.h"
#include "plan/record.h"

static constexpr double kLeft = 170, kRight = 700, kRowHeight = 22;  // of the drawing

static std::string escaped(const std::string& text) {
  std::string safe;
  for (char c : text_escape(text)) {
    switch (c) {
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '&':
        safe += "&amp;";
        break;
      case '"':
        safe += "&quot;";
        break;
      default:
        safe += c;
    }
  }
  return safe;
}

static constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>gwbox plan</title>
<meta name="viewport" content="width=device-width, initial-scale=1">
<style>
:root { color-scheme: light dark; }
body { font: 15px/1.5 system-ui, sans-serif; max-width: 60em; margin: 2em auto; padding: 0 1em; }
.caveat { border-left: 4px solid #c80; padding: .3em .8em; }
table { border-collapse: collapse; margin: .5em 0 1.5em; }
th, td { text-align: left; padding: .2em .8em .2em 0; border-bottom: 1px solid #8884; }
code { font-size: .95em; overflow-wrap: anywhere; }
svg text { font: 12px system-ui, sans-serif; fill: currentColor; }
.bss { fill: #c33; } .station { fill: #47a; } .axis { stroke: currentColor; opacity: .4; }
</style></head><body>
)";

// Somebody who was off air, from and to seconds since the command began.
struct bar {
  std::string name, title;
  const char* kind;
  double from, to;
};

static std::vector<bar> bars_of(const plan& p) {
  std::vector<bar> bars;
  double end = 0.1;
  for (const plan_outage& o : p.outages)
    end = std::max(end, o.from + std::max(o.seconds, 0.0));
  for (const plan_station& s : p.stations)
    end = std::max(end, s.from + (s.back_on.empty() ? 0 : s.seconds));
  for (const plan_outage& o : p.outages) {
    bool back = o.seconds >= 0;
    std::string title = back ? text_format("%.3f s off air", o.seconds) : "stays off air";
    bars.push_back({o.interface, title, "bss", o.from, back ? o.from + o.seconds : end * 1.1});
  }
  for (const plan_station& s : p.stations) {
    bool back = !s.back_on.empty();
    std::string title = "left " + s.interface + ", " + s.why +
                        (back ? text_format("; on %s after %.3f s", s.back_on.c_str(), s.seconds)
                              : "; not back within an hour");
    bars.push_back({s.mac, title, "station", s.from, back ? s.from + s.seconds : end * 1.1});
  }
  return bars;
}

static std::string time_line(const plan& p) {
  std::vector<bar> bars = bars_of(p);
  if (bars.empty()) return "<p>Nobody loses air.</p>\n";
  double end = 0;
  for (const bar& b : bars)
    end = std::max(end, b.to);
  double scale = (kRight - kLeft) / end, height = kRowHeight * static_cast<double>(bars.size());
  std::string text = text_format(
      "<svg viewBox=\"0 0 720 %.0f\" role=\"img\" aria-label=\"time line\">\n", height + 30);
  double y = 4;
  for (const bar& b : bars) {
    text += text_format("<text x=\"0\" y=\"%.0f\">%s</text>", y + 12, escaped(b.name).c_str());
    text += text_format(
        "<rect class=\"%s\" x=\"%.1f\" y=\"%.0f\" width=\"%.1f\" height=\"14\" rx=\"2\">"
        "<title>%s</title></rect>\n",
        b.kind, kLeft + b.from * scale, y, std::max((b.to - b.from) * scale, 2.0),
        escaped(b.title).c_str());
    y += kRowHeight;
  }
  text += text_format("<line class=\"axis\" x1=\"%.0f\" y1=\"%.0f\" x2=\"%.0f\" y2=\"%.0f\"/>\n",
                      kLeft, y, kRight, y);
  text += text_format("<text x=\"%.0f\" y=\"%.0f\">0 s</text>", kLeft, y + 16);
  return text + text_format(
                    "<text x=\"%.0f\" y=\"%.0f\" text-anchor=\"end\">%.1f s of the "
                    "model's time</text></svg>\n",
                    kRight, y + 16, end);
}

using cells = std::vector<std::string>;

static std::string table_part(const char* heading, const cells& names,
                              const std::vector<cells>& rows) {
  if (rows.empty()) return "";
  std::string text = std::string("<h2>") + heading + "</h2>\n<table><tr>";
  for (const std::string& name : names)
    text += "<th>" + escaped(name) + "</th>";
  text += "</tr>\n";
  for (const cells& row : rows) {
    text += "<tr>";
    for (const std::string& cell : row)
      text += "<td><code>" + escaped(cell) + "</code></td>";
    text += "</tr>\n";
  }
  return text + "</table>\n";
}

static std::string page_value(bool is_there, const std::string& value, bool secret) {
  if (!is_there) return "(none)";
  return secret && !value.empty() ? "(secret)" : value;
}

static std::string settings_part(const plan& p) {
  std::vector<cells> rows;
  for (const plan_setting& s : p.settings) {
    std::string field = s.field < 0 ? "" : " field " + std::to_string(s.field);
    rows.push_back({s.file, s.key + field, page_value(s.had, s.before, s.secret),
                    page_value(s.has, s.after, s.secret),
                    s.is_pending ? "after a restart of the radio of " + s.interface : "now"});
  }
  return table_part("Settings", {"file", "key", "before", "after", "in effect"}, rows);
}

static std::string lines_part(const char* heading, const std::vector<plan_line>& lines) {
  std::vector<cells> rows;
  for (const plan_line& line : lines) {
    rows.push_back({std::to_string(line.count), line.text, line.failed ? "failed" : "", line.call});
  }
  return table_part(heading, {"times", "what", "", "call"}, rows);
}

std::string plan_html(const plan& p) {
  std::string text = kHead, command;
  for (const std::string& word : p.command)
    command += (command.empty() ? "" : " ") + word;
  text += "<h1>What a command does</h1>\n<p><code>" + escaped(command) + "</code></p>\n";
  text += "<p class=\"caveat\">" + escaped(plan_caveat(p)) + "</p>\n";
  if (p.status != 0) text += "<p>It failed with status " + std::to_string(p.status) + ".</p>\n";
  if (plan_did_nothing(p)) text += "<p>It did nothing at all.</p>\n";
  text += "<h2>Off air</h2>\n" + time_line(p) + settings_part(p);
  text += lines_part("Driver requests", p.requests) + lines_part("Commands", p.commands);
  text += lines_part("Modules", p.modules) + lines_part("Companions", p.companions);
  text += lines_part("Files", p.files) + lines_part("Messages to other daemons", p.messages);
  std::vector<cells> errors;
  for (const std::string& line : p.output)
    errors.push_back({line});
  return text + table_part("The daemon's errors", {"line"}, errors) + "</body></html>\n";
}
