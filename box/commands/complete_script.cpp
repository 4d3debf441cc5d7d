// The scripts that connect the shells with `gwbox complete`.
#include <cstdio>

#include "commands/complete.h"

// bash ends a word at "=", ":" and "@", and replaces only what follows the last of them. gwbox gets
// the words as it would when the line is run.
static constexpr char kBash[] = R"(# bash completion for gwbox
_gwbox_add() {
  local offer=$1
  COMPREPLY+=("${offer#"$typed"}")
}
_gwbox_files() {
  local file value=$current
  [[ $current != --*=* ]] || value=${current#*=}
  compopt -o filenames 2>/dev/null
  while IFS= read -r file; do
    _gwbox_add "${current%"$value"}$file"
  done < <(compgen -f -- "$value")
}
# Completes what follows "--" as a command line of its own, if bash-completion is loaded.
_gwbox_command() {
  local i=1
  while ((i < COMP_CWORD)) && [[ ${COMP_WORDS[i]} != -- ]]; do i=$((i + 1)); done
  if declare -F _command_offset >/dev/null; then
    _command_offset $((i + 1))
  elif ((COMP_CWORD == i + 1)); then
    mapfile -t COMPREPLY < <(compgen -c -- "$current" | sort -u)
  else
    typed=''
    _gwbox_files
  fi
}
_gwbox() {
  local line=${COMP_LINE:0:COMP_POINT} words current typed='' breaks='' offer
  read -ra words <<<"$line"
  [[ $line != *[[:blank:]] ]] || words+=('')
  current=${words[${#words[@]} - 1]}
  for offer in = : @; do
    [[ $COMP_WORDBREAKS != *$offer* ]] || breaks+=$offer
  done
  [ -z "$breaks" ] || typed=${current%"${current##*[$breaks]}"}
  COMPREPLY=()
  compopt -o nosort 2>/dev/null
  while IFS= read -r offer; do
    case $offer in
      :files) _gwbox_files ;;
      :command) _gwbox_command ;;
      ?*) _gwbox_add "$offer" ;;
    esac
  done < <("$1" complete -- "${words[@]:1}" 2>/dev/null)
  [[ ${#COMPREPLY[@]} != 1 || ${COMPREPLY[0]} != *[=@] ]] || compopt -o nospace 2>/dev/null
}
complete -F _gwbox gwbox
)";

// When zsh autoloads the script as a file, the script is the body of the function.
static constexpr char kZsh[] = R"(#compdef gwbox
_gwbox() {
  local -a before
  local offer line
  before=("${(@Q)words[2,CURRENT-1]}")
  line=$("${(Q)words[1]}" complete -- "${before[@]}" "${(Q)PREFIX}" 2>/dev/null)
  for offer in "${(@f)line}"; do
    case $offer in
      '') ;;
      :files) compset -P '--*='; _files ;;
      :command)
        local -i place=${words[(i)--]}
        shift $place words
        CURRENT=$((CURRENT - place))
        _normal ;;
      *[=@]) compadd -V gwbox -S '' -- "$offer" ;;
      *) compadd -V gwbox -- "$offer" ;;
    esac
  done
}
if [ "${funcstack[1]}" = _gwbox ]; then
  _gwbox "$@"
else
  compdef _gwbox gwbox
fi
)";

struct shell_row {
  const char* name;
  const char* script;
};

static constexpr shell_row kShells[] = {{"bash", kBash}, {"zsh", kZsh}};

std::string complete_script(const std::string& shell) {
  for (const shell_row& row : kShells) {
    if (shell == row.name) return row.script;
  }
  return "";
}

std::vector<std::string> complete_shells() {
  std::vector<std::string> names;
  for (const shell_row& row : kShells)
    names.push_back(row.name);
  return names;
}

int complete_print_script(const std::string& shell) {
  fputs(complete_script(shell).c_str(), stdout);
  return 0;
}
