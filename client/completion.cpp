#include "completion.h"

#include <map>

#include "lookup.h"
#include "meanings.h"
#include "table.h"
#include "topic.h"

namespace {

constexpr char kOptions[] = "--host --port --timeout --json --raw --version --help";

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

// Words that make sense for an argument; "" where they are not few.
std::string values_of(const procedure_row& procedure, const argument_spec& argument) {
  const meaning_entry* meaning = meanings_find(procedure, argument.name);
  if (meaning != nullptr && meaning->values != nullptr) return meaning->values;
  return argument.type == argument_type::kBool ? "on off" : "";
}

// "NAME|NAME...) words='...';;" for each list of words that arguments in that
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
        .append(")\n          words='")
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

// What both shells run: from the words before the one to complete to `words`.
// Options and what they take are passed over; where bash takes "=" for a word
// of its own, so is that.
std::string chooser() {
  return "_wificonf_words() {\n"
         "  local word procedure='' watch='' last='' place=0 skip=0\n"
         "  words=''\n"
         "  for word in \"$@\"; do\n"
         "    last=$word\n"
         "    if [ $skip = 1 ]; then [ \"$word\" = '=' ] || skip=0; continue; fi\n"
         "    case $procedure/$word in\n"
         "      /--host|/--port|/--timeout) skip=1 ;;\n"
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
         "    list/--topic) words='" +
         topic_words() +
         "'; return ;;\n"
         "    */--every|*/--count) return ;;\n"
         "  esac\n"
         "  case $procedure/$place in\n"
         "    /*) words=$names\n"
         "      [ -n \"$watch\" ] || words=\"$names " +
         commands() + " " + kOptions +
         "\"\n"
         "      return ;;\n"
         "    describe/0|schema/0) words=$names; return ;;\n"
         "    list/0) words='--topic --topics'; return ;;\n"
         "    dump/0) words='--redact'; return ;;\n"
         "    completion/0) words='bash zsh'; return ;;\n"
         "    top/*) words='--every --count'; return ;;\n"
         "  esac\n"
         "  case $place in\n" +
         argument_cases() +
         "  esac\n"
         "  if [ -n \"$watch\" ] && { [ $place != 0 ] || [ -z \"$words\" ]; }; then\n"
         "    words=\"$words --every --count\"\n"
         "  fi\n"
         "}\n";
}

constexpr char kBash[] =
    "_wificonf() {\n"
    "  local words\n"
    "  _wificonf_words \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"\n"
    "  COMPREPLY=($(compgen -W \"$words\" -- \"${COMP_WORDS[COMP_CWORD]}\"))\n"
    "}\n"
    "complete -F _wificonf wificonf\n";

constexpr char kZsh[] =
    "_wificonf() {\n"
    "  local before=(\"${words[@]:1:$((CURRENT - 2))}\")\n"
    "  local words\n"
    "  _wificonf_words \"${before[@]}\"\n"
    "  compadd -- ${=words}\n"
    "}\n"
    "compdef _wificonf wificonf\n";

}  // namespace

std::string completion_script(const std::string& shell) {
  if (shell == "bash") return "# bash completion for wificonf\n" + chooser() + kBash;
  if (shell == "zsh") return "#compdef wificonf\n" + chooser() + kZsh;
  return "";
}
