# Completion of rvfinspect for bash. Commands and options are taken from its help.
_rvfinspect() {
  local word=${COMP_WORDS[COMP_CWORD]} command="" words=""
  if [[ $COMP_CWORD -gt 1 ]]; then command=${COMP_WORDS[1]}; fi
  if [[ -z $command ]]; then
    words="--help --version $(rvfinspect --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')"
  elif [[ $word == -* ]]; then
    words=$(rvfinspect "$command" --help | sed -nE 's/^  (--[a-z-]+).*/\1/p')
  else
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
    return
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _rvfinspect rvfinspect
