# Completion of gwbox for bash. The words come from gwbox itself: commands and
# options from its help, scenarios from its list.
_gwbox_section() { gwbox "${@:2}" --help 2>/dev/null | sed -n "/^$1:/,/^\$/p"; }
_gwbox_commands() { _gwbox_section Commands | sed -nE 's/^  ([a-z]+) .*/\1/p'; }
_gwbox_options() { _gwbox_section Options "$@" | grep -oE -- '^  (-h, )?--[a-z-]+' | grep -oE -- '--[a-z-]+'; }
_gwbox_scenarios() { gwbox scenario list 2>/dev/null | cut -d ' ' -f 1; }

_gwbox() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' words='' i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      --box) i=$((i + 1)) ;;
      --) return ;;
      -*) ;;
      *) command=${command:-${COMP_WORDS[i]}} ;;
    esac
  done
  COMPREPLY=()
  case $command:$previous in
    run:--scenario) words=$(_gwbox_scenarios) ;;
    run:--board) words="mt7603 mt7603+mt7612 mt7615" ;;
    scenario:scenario) words="list show check" ;;
    scenario:show) words="$(_gwbox_scenarios) schema" ;;
    set:set) words="station neighbour nonassoc bss radio companion" ;;
    :--box) return ;;
    :*) words=$(_gwbox_commands)
      [[ $current != -* ]] || words=$(_gwbox_options) ;;
    *) [[ $current != -* ]] || words=$(_gwbox_options "$command") ;;
  esac
  # shellcheck disable=SC2207 # no word has a blank
  COMPREPLY=($(compgen -W "$words" -- "$current"))
}
complete -o default -F _gwbox gwbox
