# bash completion for reedid: commands, options and names come from its own help, so that they are never out of date.
_reedid_samples() { reedid sample 2>/dev/null | sed -n 's/^\([a-z0-9][a-z0-9-]*\) .*/\1/p'; }
# _reedid_places SCHEME: what may stand behind the colon
_reedid_places() {
  case $1 in
    sample) _reedid_samples ;;
    connector | override | i2c) reedid displays 2>/dev/null | sed -n 's/^card[0-9]*-\(.*\): .*/\1/p' ;;
    v4l2) compgen -G '/dev/video*'; compgen -G '/dev/v4l-subdev*' ;;
  esac
}
_reedid_schemes='@(sample|connector|i2c|v4l2|override)'
# what it says of a name that is no limit
_reedid_limits() { reedid limit '?' - -o - 2>&1 </dev/null | sed -n 's/.*there are //p' | tr ',' ' '; }
_reedid_forms() { reedid convert --help 2>/dev/null | sed -n 's/^  --to .*{\(.*\)}.*/\1/p' | tr ',' ' '; }
_reedid_commands() { reedid --help | sed -n '/^Examples:/q;s/^  \([a-z][a-z0-9-]*\)  .*/\1/p'; }
_reedid() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]} words=
  # "sample:tv" is three words where the colon separates them
  if [[ $word == : && $before == $_reedid_schemes ]]; then
    mapfile -t COMPREPLY < <(_reedid_places "$before")
    return
  elif [[ $before == : && ${COMP_WORDS[COMP_CWORD - 2]} == $_reedid_schemes ]]; then
    words=$(_reedid_places "${COMP_WORDS[COMP_CWORD - 2]}")
  elif ((COMP_CWORD == 1)); then
    words="$(_reedid_commands) help $(reedid --help | sed -n '/^Options:/,/^$/p' | grep -oE -- '--[a-z0-9-]+')"
  elif [[ $word == -* ]]; then
    words=$(reedid "$command" --help 2>/dev/null | sed -n 's/^  \(-[^ ]*\).*/\1/p' | grep -oE -- '--[a-z0-9-]+')
  elif [[ $word == $_reedid_schemes:* ]]; then
    words=$(_reedid_places "${word%%:*}" | sed "s,^,${word%%:*}:,")
  elif [[ $before == --limit || ($command == limit && $COMP_CWORD == 2) ]]; then
    words=$(_reedid_limits)
  elif [[ $before == --to ]]; then
    words=$(_reedid_forms)
  elif [[ $command == sample && $COMP_CWORD == 2 ]]; then
    words=$(_reedid_samples)
  elif [[ $command == help ]]; then
    words=$(_reedid_commands)
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -o default -F _reedid reedid
