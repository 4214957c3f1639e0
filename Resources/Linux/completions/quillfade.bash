# Completion of quillfade's commands for bash.

_quillfade() {
  local word=${COMP_WORDS[COMP_CWORD]} choices=
  if [ "$COMP_CWORD" -eq 1 ]; then
    choices='toggle peek whole-screen select-area style outline status windows keys doctor quit share --help --version'
  elif [ "$COMP_CWORD" -eq 2 ]; then
    case ${COMP_WORDS[1]} in
      style) choices='solid live' ;;
      outline) choices='on off' ;;
      status | doctor) choices='--json' ;;
      share) choices='--view --install --uninstall --' ;;
    esac
  elif [ "${COMP_WORDS[1]}" = share ] && [ "${COMP_WORDS[COMP_CWORD-1]}" = --view ]; then
    choices='unmirrored clean'
  fi
  mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
}

complete -F _quillfade quillfade
