#include "commands/help.h"

#include "base/text.h"

namespace {

constexpr size_t kWidth = 79;
constexpr size_t kIndent = 20;  // of the meanings

// One line of the usage; a command may have several, the meaning is in the first.
struct help_entry {
  const char* command;  // "" for the call of a procedure
  const char* usage;
  const char* word;     // what the meaning is of
  const char* meaning;  // "": none
};

constexpr help_entry kEntries[] = {
    {"", "[OPTION...] PROCEDURE [ARGUMENT...]", "PROCEDURE",
     "name, for example wlan_set_ssid or wlan-set-ssid; or a number, then without arguments and "
     "shown as bytes. Its arguments are checked before anything is sent. For an argument that is a "
     "text, @FILE is what the file holds, @- standard input, @@... a text that begins with @"},
    {"ping", "[OPTION...] ping [--wait SECONDS]", "ping",
     "is the daemon there, and how long does an answer take; --wait asks until it is, that long at "
     "most"},
    {"list", "[--json] list [--active] [--topic TOPIC] [PATTERN]", "list",
     "procedures whose name or summary has PATTERN, in which * and ? are wildcards; with --active "
     "without those that do nothing, with --topic those of one topic, and --topics tells which "
     "topics there are"},
    {"list", "[--json] list --topics", "", ""},
    {"describe", "[--json] describe PROCEDURE", "describe",
     "its arguments, its result, what it does, what to call first, an example"},
    {"schema", "schema PROCEDURE|error|top", "schema",
     "JSON Schema of what --json prints of its result, of a failure, or of top; with --arguments "
     "of the procedure's arguments"},
    {"schema", "schema --arguments PROCEDURE", "", ""},
    {"dump", "[OPTION...] dump [--redact]", "dump",
     "all that the gateway tells of itself, as JSON; --redact leaves out secrets and gives "
     "addresses and names others"},
    {"watch", "[OPTION...] watch [--every TIME] [--count N] [--force] PROCEDURE [ARGUMENT...]",
     "watch",
     "calls again and again, every second if not told otherwise; counters have their rates. TIME "
     "is 10ms to 24h, N how many calls; q quits. What is no getter takes --force"},
    {"top", "[OPTION...] top [--every TIME] [--count N] [--sort KEY] [--bss LIST]", "top",
     "stations of all BSSs, or of those of LIST, such as 1,9; the busiest first, or by KEY: bss, "
     "station, rssi, down, up, out, in, sent, received. Arrows and page keys scroll, q quits. UP "
     "and BTM are known on an MT7615 only: elsewhere UP is DOWN, and BTM '-'"},
    {"completion", "completion bash|zsh", "completion",
     "for the shell: source <(wificonf completion bash)"},
};

constexpr help_entry kOptions[] = {
    {"", "", "--host HOST", "name or IPv4 address of the daemon (192.168.254.254)"},
    {"", "", "--port PORT", "its UDP port (60001)"},
    {"", "", "--timeout SECONDS", "how long to wait for an answer (10); fractions allowed"},
    {"", "", "--json", "one JSON value on one line instead of text, of failures, too"},
    {"", "", "--raw",
     "the result as it came, as a hex dump: * stands for lines like the one before; with --json as "
     "hexadecimal digits"},
    {"", "", "--force", "send arguments that are refused, such as BSS 17, all the same"},
    {"", "", "--inert-ok", "a procedure that does nothing is a success: status 0, not 5"},
    {"", "", "--version", "version of this program"},
    {"", "", "-h, --help", "this text; behind a command or PROCEDURE, of that"},
};

std::string usage_line(const help_entry& entry, bool first) {
  const std::string line = std::string(first ? "usage: " : "       ") + "wificonf " + entry.usage;
  return text_wrap(line, kWidth, 0, 18) + "\n";
}

std::string meaning_lines(const help_entry& entry) {
  if (*entry.meaning == '\0') return "";
  std::string line = text_format("  %-*s", static_cast<int>(kIndent) - 2, entry.word);
  if (line.size() > kIndent) line += " ";
  return line + text_wrap(entry.meaning, kWidth, line.size(), kIndent) + "\n";
}

}  // namespace

std::string help_text() {
  std::string out;
  for (const help_entry& entry : kEntries)
    out += usage_line(entry, out.empty());
  out += "\nCalls one procedure of the Wi-Fi configuration daemon and prints what it\nanswers.\n\n";
  for (const help_entry& entry : kEntries)
    out += meaning_lines(entry);
  out += "\nOptions, before PROCEDURE:\n";
  for (const help_entry& entry : kOptions)
    out += meaning_lines(entry);
  return out +
         "\nA call is sent once and never repeated; only ping --wait asks again.\n\n"
         "Exit status: 0 done, 1 the daemon answered a failure code, 2 wrong usage,\n"
         "3 no answer, an RPC error, or output that cannot be written, 4 not ready: try\n"
         "again, 5 the procedure is accepted and does nothing.\n";
}

std::string help_of(std::string_view command) {
  std::string usage, meaning;
  for (const help_entry& entry : kEntries) {
    if (command.empty() || command != entry.command) continue;
    usage += usage_line(entry, usage.empty());
    meaning += meaning_lines(entry);
  }
  return usage.empty() ? "" : usage + "\n" + meaning + "\n'wificonf --help' has the options.\n";
}
