#include "commands/completion.h"

#include <map>
#include <sstream>

#include "base/text.h"
#include "commands/session.h"
#include "values/argument_meanings.h"
#include "wire/lookup.h"
#include "wire/table.h"

static constexpr char kOptionNames[] =
    "--host --port --timeout --json --raw --force --inert-ok --version --help";

using command_rows = std::span<const command_row* const>;

static std::string names() {
  std::string out;
  for (const procedure_row& procedure : table_procedures())
    out += (out.empty() ? "" : " ") + lookup_display_name(procedure);
  return out;
}

// Words to offer for an argument; "" if there are too many.
static std::string values_of(const procedure_row& procedure, const argument_spec& argument) {
  std::string out;
  for (const std::string& value : constraint_values(meanings_limits(procedure, argument)))
    out += (out.empty() ? "" : " ") + value;
  return out;
}

// "NAME|NAME...) offers='...';;" for each list of words that arguments in this place have.
static std::string cases_of(size_t place) {
  std::map<std::string, std::string> procedures_by_values;
  for (const procedure_row& procedure : table_procedures()) {
    const auto arguments = table_arguments(procedure);
    if (place >= arguments.size()) continue;
    const std::string values = values_of(procedure, arguments[place]);
    if (values.empty()) continue;
    std::string& list = procedures_by_values[values];
    list += (list.empty() ? "" : "|") + lookup_display_name(procedure);
  }
  std::string out;
  for (const auto& [values, procedures] : procedures_by_values)
    out.append("        ")
        .append(procedures)
        .append(")\n          offers='")
        .append(values)
        .append("' ;;\n");
  return out;
}

static std::string argument_cases() {
  std::string out;
  for (size_t place = 0; place < 6; ++place) {
    const std::string cases = cases_of(place);
    if (cases.empty()) continue;
    out += "    " + std::to_string(place) + ")\n      case $procedure in\n" + cases +
           "      esac ;;\n";
  }
  return out;
}

static std::string names_of(command_rows commands) {
  std::string out;
  for (const command_row* command : commands)
    out += (out.empty() ? "" : " ") + std::string(command->name);
  return out;
}

static std::string words_of(const command_offer& offer) {
  return offer.list == nullptr ? offer.words : offer.list();
}

// "|top/--bss" for the "--bss" of top. Options of a command that calls a procedure may follow
// any word.
static std::string valued_options(command_rows commands) {
  std::string out;
  for (const command_row* command : commands) {
    std::istringstream words(command->valued);
    for (std::string word; words >> word;)
      out += std::string("|") + (command->calls_procedure ? "*" : command->name) + "/" + word;
  }
  return out;
}

// The words after an option, or in a place of the command's own.
static std::string command_cases(command_rows commands, bool after_option) {
  std::string out;
  for (const command_row* command : commands) {
    for (const command_offer& offer : command->offers) {
      if (command->calls_procedure || (offer.at[0] == '-') != after_option) continue;
      out += std::string("    ") + command->name + "/" + offer.at + ")" +
             (offer.procedures ? " kind=names offers=\"$names " : " offers=\"") + words_of(offer) +
             "\"; return ;;\n";
    }
  }
  return out;
}

// One line for each command that calls a procedure. If the shell variable of its name is set,
// the line sets `offers`, with the command's words for that place, unless `condition` holds.
static std::string caller_lines(command_rows commands, std::string_view place,
                                const char* condition, const char* offers) {
  std::string out;
  for (const command_row* command : commands) {
    for (const command_offer& offer : command->offers) {
      if (!command->calls_procedure || place != offer.at) continue;
      out += std::string("  [ -z \"$") + command->name + "\" ] || " + condition + "offers=\"" +
             offers + " " + words_of(offer) + "\"\n";
    }
  }
  return out;
}

static std::string caller_variables(command_rows commands) {
  std::string out;
  for (const command_row* command : commands)
    if (command->calls_procedure) out += text_format(" %s=''", command->name);
  return out;
}

static std::string caller_marks(command_rows commands) {
  std::string out;
  for (const command_row* command : commands)
    if (command->calls_procedure)
      out += text_format("      /%s) %s=yes ;;\n", command->name, command->name);
  return out;
}

// The code that both shells run. From the words before the one to complete it sets `offers` and
// `kind`: names, which may have dashes and capitals, or values, which keep their own order.
// Options and their values are skipped. Bash makes "=" a word of its own, so that is skipped
// too.
static std::string chooser(command_rows commands) {
  return "_wificonf_words() {\n"
         "  local word procedure=''" +
         caller_variables(commands) +
         " last='' place=0 skip=0\n"
         "  offers='' kind=values\n"
         "  for word in \"$@\"; do\n"
         "    last=$word\n"
         "    if [ $skip = 1 ]; then [ \"$word\" = '=' ] || skip=0; continue; fi\n"
         "    case $procedure/$word in\n"
         "      /--host|/--port|/--timeout" +
         valued_options(commands) +
         ") skip=1 ;;\n"
         "      /-*) ;;\n" +
         caller_marks(commands) +
         "      /*) procedure=$word ;;\n"
         "      *) place=$((place + 1)) ;;\n"
         "    esac\n"
         "  done\n"
         "  [ $skip = 0 ] || return\n"
         "  local names='" +
         names() +
         "'\n"
         "  if [ -z \"$procedure\" ]; then\n"
         "    kind=names\n"
         "    offers=\"$names " +
         names_of(commands) + " " + kOptionNames + "\"\n" +
         caller_lines(commands, "0", "", "$names") +
         "    return\n"
         "  fi\n"
         "  case $procedure/$last in\n" +
         command_cases(commands, true) +
         "  esac\n"
         "  case $procedure/$place in\n" +
         command_cases(commands, false) +
         "  esac\n"
         "  case $place in\n" +
         argument_cases() + "  esac\n" +
         caller_lines(commands, "*", "{ [ $place = 0 ] && [ -n \"$offers\" ]; } || ", "$offers") +
         "}\n";
}

static constexpr char kBash[] =
    "_wificonf() {\n"
    "  local offers kind current=${COMP_WORDS[COMP_CWORD]}\n"
    "  _wificonf_words \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"\n"
    "  if [ $kind = values ]; then\n"
    "    compopt -o nosort 2>/dev/null\n"
    "  elif [[ $current != -* ]]; then\n"
    "    current=${current//-/_} current=${current,,}\n"
    "  fi\n"
    "  COMPREPLY=($(compgen -W \"$offers\" -- \"$current\"))\n"
    "}\n"
    "complete -F _wificonf wificonf\n";

// In zsh `words` is the command line, so no local variable may have that name. When zsh
// autoloads this file, the file itself is the function.
static constexpr char kZsh[] =
    "_wificonf() {\n"
    "  local before=(\"${words[@]:1:$((CURRENT - 2))}\")\n"
    "  local offers kind\n"
    "  _wificonf_words \"${before[@]}\"\n"
    "  if [ $kind = values ]; then\n"
    "    compadd -V values -- ${=offers}\n"
    "  else\n"
    "    compadd -M 'm:{A-Z}={a-z} m:-=_' -- ${=offers}\n"
    "  fi\n"
    "}\n"
    "if [ \"${funcstack[1]}\" = _wificonf ]; then\n"
    "  _wificonf \"$@\"\n"
    "else\n"
    "  compdef _wificonf wificonf\n"
    "fi\n";

std::string completion_script(const std::string& shell, command_rows commands) {
  if (shell == "bash") return "# bash completion for wificonf\n" + chooser(commands) + kBash;
  if (shell == "zsh") return "#compdef wificonf\n" + chooser(commands) + kZsh;
  return "";
}

static exit_status run_completion(const output_streams& streams, const client_options& options) {
  const std::string shell = options.words.size() == 2 ? options.words[1] : "";
  const std::string script = completion_script(shell, options.commands);
  if (script.empty()) return fail(streams, kExitUsage, "completion takes bash or zsh");
  print(streams, script);
  return kExitDone;
}

static constexpr const char* kCompletionUsages[] = {"completion bash|zsh"};
static constexpr command_offer kCompletionOffers[] = {{"0", "bash zsh"}};

const command_row kCompletionCommand = {
    .name = "completion",
    .usages = kCompletionUsages,
    .meaning = "for the shell: source <(wificonf completion bash)",
    .offers = kCompletionOffers,
    .has_json = false,
    .run = run_completion};
