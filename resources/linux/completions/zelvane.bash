# Completion of zelvane's commands, options and rows for bash.
_zelvane() {
  local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} words=
  if [ "$COMP_CWORD" -eq 1 ]; then
    words="list watch jump next ack pin title memo restore terminals connect disconnect status --help --version"
  else
    case $command in
      list | watch | terminals | status) words="--json --help" ;;
      restore) words="--exact --dry-run --help" ;;
      jump | ack | pin | title | memo)
        [ "$COMP_CWORD" -ne 2 ] || words=$(zelvane list 2>/dev/null | sed -n 's/^ *\([0-9][0-9]*\)  .*/\1/p')
        ;;
      *) words=--help ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _zelvane zelvane
