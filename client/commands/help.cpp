#include "commands/help.h"

#include "base/text.h"

static constexpr size_t kWidth = 79;
static constexpr size_t kIndent = 20;  // column of the meanings

struct help_entry {
  const char* word;
  const char* meaning;
};

static constexpr char kCallUsage[] = "[OPTION...] PROCEDURE [ARGUMENT...]";
static constexpr help_entry kCall = {
    "PROCEDURE",
    "name, for example wlan_set_ssid or wlan-set-ssid; or a number, then without arguments and "
    "shown as bytes. Its arguments are checked before anything is sent. For an argument that is a "
    "text, @FILE is what the file holds, @- standard input, @@... a text that begins with @"};

static constexpr help_entry kOptions[] = {
    {"--host HOST", "name or IPv4 address of the daemon (192.168.254.254)"},
    {"--port PORT", "its UDP port (60001)"},
    {"--timeout SECONDS", "how long to wait for an answer (10); fractions allowed"},
    {"--json", "one JSON value on one line instead of text, of failures, too"},
    {"--raw",
     "the result as it came, as a hex dump: * stands for lines like the one before; with --json as "
     "hexadecimal digits"},
    {"--force", "send arguments that are refused, such as BSS 17, all the same"},
    {"--inert-ok", "a procedure that does nothing is a success: status 0, not 5"},
    {"--version", "version of this program"},
    {"-h, --help", "this text; after a command or PROCEDURE, its own"},
};

static std::string usage_line(const char* usage, bool first) {
  const std::string line = std::string(first ? "usage: " : "       ") + "wificonf " + usage;
  return text_wrap(line, kWidth, 0, 18) + "\n";
}

static std::string usage_lines(const command_row& command, bool first) {
  std::string out;
  for (const char* usage : command.usages)
    out += usage_line(usage, first && out.empty());
  return out;
}

static std::string meaning_lines(const help_entry& entry) {
  std::string line = text_format("  %-*s", static_cast<int>(kIndent) - 2, entry.word);
  if (line.size() > kIndent) line += " ";
  return line + text_wrap(entry.meaning, kWidth, line.size(), kIndent) + "\n";
}

std::string help_text(std::span<const command_row* const> commands) {
  std::string out = usage_line(kCallUsage, true);
  for (const command_row* command : commands)
    out += usage_lines(*command, false);
  out += "\nCalls one procedure of the Wi-Fi configuration daemon and prints what it\nanswers.\n\n";
  out += meaning_lines(kCall);
  for (const command_row* command : commands)
    out += meaning_lines({command->name, command->meaning});
  out += "\nOptions, before PROCEDURE:\n";
  for (const help_entry& entry : kOptions)
    out += meaning_lines(entry);
  return out +
         "\nA call is sent once and never repeated; only ping --wait asks again.\n\n"
         "Exit status: 0 done, 1 the daemon answered a failure code, 2 wrong usage,\n"
         "3 no answer, an RPC error, or output that cannot be written, 4 not ready: try\n"
         "again, 5 the procedure is accepted and does nothing.\n";
}

std::string help_of(const command_row& command) {
  return usage_lines(command, true) + "\n" + meaning_lines({command.name, command.meaning}) +
         "\n'wificonf --help' has the options.\n";
}
