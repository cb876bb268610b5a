# bash completion for reedid: commands and options come from its own help, so that they are never out of date.
_reedid() {
  local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]}
  if ((COMP_CWORD == 1)); then
    mapfile -t COMPREPLY < <(compgen -W "$(reedid --help | sed -n '/^Examples:/q;s/^  \([a-z][a-z0-9-]*\)  .*/\1/p') \
      $(reedid --help | sed -n '/^Options:/,/^$/p' | grep -oE -- '--[a-z0-9-]+')" -- "$word")
  elif [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(reedid "$command" --help 2>/dev/null |
      sed -n 's/^  \(-[^ ]*\).*/\1/p' | grep -oE -- '--[a-z0-9-]+')" -- "$word")
  elif [[ $word == sample:* || $command == sample ]]; then
    return  # names of samples
  fi
}
complete -o default -F _reedid reedid
