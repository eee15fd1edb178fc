# Completion of ondrel in bash: the sub-commands and options are those that the program's own help names.
_ondrel() {
  local word=${COMP_WORDS[COMP_CWORD]} at command=()
  for ((at = 1; at < COMP_CWORD && at < 3; ++at)); do
    [[ ${COMP_WORDS[at]} == [a-z]* ]] || break
    command+=("${COMP_WORDS[at]}")
  done
  local offered
  offered=$("${COMP_WORDS[0]}" "${command[@]}" --help 2> /dev/null | awk '
    /^(Options|Subcommands):$/ { inside = 1; next }
    /^$/ { inside = 0 }
    inside { sub(/^-.,/, "", $1); print $1 }')
  mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$word")
  [[ ${COMPREPLY[*]} ]] || mapfile -t COMPREPLY < <(compgen -f -- "$word")
}
complete -o filenames -F _ondrel ondrel
