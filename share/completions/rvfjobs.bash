# Completion of rvfjobs for bash.
_rvfjobs() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  case $before in
    --out | --collect) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
    --manifest | --program) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    --jobs | --time-limit | --memory-limit | --retries | --engine-option) ;;
    *)
      if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--out --manifest --jobs --time-limit --memory-limit --retries
          --again --report --program --slurm --wait --engine-option --collect --help --version" -- "$word")
      else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
      fi
      ;;
  esac
}
complete -F _rvfjobs rvfjobs
