# Completion of rvfcompare for bash.
_rvfcompare() {
  local names="-COMPARE= -POS_TOLERANCE= -LINE_TOLERANCE= -DIFFTOLERANCE= -DIFFERENCEFILE= -MESSAGEFILE=
    -MSGENCODE= -SIMPLERETURN -DBCS_MODE= -CONTROLFILE= -CONTROLFILEENCODING= --help --version"
  # Depending on COMP_WORDBREAKS, the "=" is a separate word or the last character of one.
  local word=${COMP_WORDS[COMP_CWORD]} name=""
  if [[ $word == "=" ]]; then
    name=${COMP_WORDS[COMP_CWORD - 1]} word=""
  elif [[ $COMP_CWORD -ge 2 && ${COMP_WORDS[COMP_CWORD - 1]} == "=" ]]; then
    name=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  local values=""
  case ${name^^} in
    "")
      mapfile -t COMPREPLY < <(compgen -W "$names" -- "$word")
      if [[ ${COMPREPLY[0]-} == *= ]]; then compopt -o nospace; fi
      return
      ;;
    -MSGENCODE) values="ASCII BIG5 EBCDIC ISO88592 LATIN1 LATIN2 SJIS UTF16 UTF16BE UTF16LE UTF8" ;;
    -CONTROLFILEENCODING) values="ISO88591 UTF8 UTF16BE UTF16LE" ;;
    -DBCS_MODE) values=TRUE ;;
    -COMPARE) # the second file follows the comma
      compopt -o nospace -o filenames
      local before=""
      if [[ $word == *,* ]]; then before=${word%%,*}, word=${word#*,}; fi
      mapfile -t COMPREPLY < <(compgen -f -- "$word" | while read -r file; do echo "$before$file"; done)
      return
      ;;
    -*FILE)
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      return
      ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$values" -- "$word")
}
complete -F _rvfcompare rvfcompare
