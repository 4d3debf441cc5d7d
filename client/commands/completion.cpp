#include "commands/completion.h"

#include <map>

#include "commands/top_sample.h"
#include "values/meanings.h"
#include "wire/lookup.h"
#include "wire/table.h"
#include "wire/topic.h"

namespace {

constexpr char kOptions[] =
    "--host --port --timeout --json --raw --force --inert-ok --version --help";

std::string names() {
  std::string out;
  for (const procedure_row& procedure : table_procedures())
    out += (out.empty() ? "" : " ") + lookup_display_name(procedure);
  return out;
}

std::string commands() {
  std::string out;
  for (const char* command : lookup_commands())
    out += (out.empty() ? "" : " ") + std::string(command);
  return out;
}

std::string topic_words() {
  std::string out;
  for (const char* topic : topics())
    out += (out.empty() ? "" : " ") + topic_word(topic);
  return out;
}

std::string orders() {
  std::string out;
  for (const top_order& order : top_orders())
    out += (out.empty() ? "" : " ") + std::string(order.name);
  return out;
}

// Words that make sense for an argument; "" where they are not few.
std::string values_of(const procedure_row& procedure, const argument_spec& argument) {
  std::string out;
  for (const std::string& value : constraint_values(meanings_limits(procedure, argument)))
    out += (out.empty() ? "" : " ") + value;
  return out;
}

// "NAME|NAME...) offers='...';;" for each list of words that arguments in that
// place have.
std::string cases_of(size_t place) {
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

std::string argument_cases() {
  std::string out;
  for (size_t place = 0; place < 6; place++) {
    const std::string cases = cases_of(place);
    if (cases.empty()) continue;
    out += "    " + std::to_string(place) + ")\n      case $procedure in\n" + cases +
           "      esac ;;\n";
  }
  return out;
}

// What both shells run: from the words before the one to complete to `offers`, and
// `kind`: names, where the client takes dashes and capitals, too, or values, which
// have an order of their own. Options and what they take are passed over; where bash
// takes "=" for a word of its own, so is that.
std::string chooser() {
  return "_wificonf_words() {\n"
         "  local word procedure='' watch='' last='' place=0 skip=0\n"
         "  offers='' kind=values\n"
         "  for word in \"$@\"; do\n"
         "    last=$word\n"
         "    if [ $skip = 1 ]; then [ \"$word\" = '=' ] || skip=0; continue; fi\n"
         "    case $procedure/$word in\n"
         "      /--host|/--port|/--timeout|*/--every|*/--count|top/--bss) skip=1 ;;\n"
         "      /-*) ;;\n"
         "      /watch) watch=yes ;;\n"
         "      /*) procedure=$word ;;\n"
         "      *) place=$((place + 1)) ;;\n"
         "    esac\n"
         "  done\n"
         "  [ $skip = 0 ] || return\n"
         "  local names='" +
         names() +
         "'\n"
         "  case $procedure/$last in\n"
         "    top/--sort) offers='" +
         orders() +
         "'; return ;;\n"
         "    list/--topic) offers='" +
         topic_words() +
         "'; return ;;\n"
         "    list/--active) offers='--topic'; return ;;\n"
         "  esac\n"
         "  case $procedure/$place in\n"
         "    /*) kind=names\n"
         "      offers=\"$names --every --count --force\"\n"
         "      [ -n \"$watch\" ] || offers=\"$names " +
         commands() + " " + kOptions +
         "\"\n"
         "      return ;;\n"
         "    describe/0|schema/1) kind=names offers=$names; return ;;\n"
         "    schema/0) kind=names offers=\"$names error top --arguments\"; return ;;\n"
         "    list/0) offers='--active --topic --topics'; return ;;\n"
         "    dump/0) offers='--redact'; return ;;\n"
         "    ping/0) offers='--wait'; return ;;\n"
         "    completion/0) offers='bash zsh'; return ;;\n"
         "    top/*) offers='--every --count --sort --bss'; return ;;\n"
         "  esac\n"
         "  case $place in\n" +
         argument_cases() +
         "  esac\n"
         "  if [ -n \"$watch\" ] && { [ $place != 0 ] || [ -z \"$offers\" ]; }; then\n"
         "    offers=\"$offers --every --count\"\n"
         "  fi\n"
         "}\n";
}

constexpr char kBash[] =
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

// What zsh has in `words` is the command line, which a local of that name would hide
// from it. As a file that zsh loads with the first completion, it is the function.
constexpr char kZsh[] =
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

}  // namespace

std::string completion_script(const std::string& shell) {
  if (shell == "bash") return "# bash completion for wificonf\n" + chooser() + kBash;
  if (shell == "zsh") return "#compdef wificonf\n" + chooser() + kZsh;
  return "";
}
