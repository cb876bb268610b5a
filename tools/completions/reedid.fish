# fish completion for reedid: commands, options and names come from its own help, so that they are never out of date.
function __reedid_commands
    reedid --help | string match -rg '^  ([a-z][a-z0-9-]+)  +(.*)$' | paste - -
end
function __reedid_options
    reedid (commandline -opc)[2] --help 2>/dev/null | string match -rg '^  [^ ]*(--[a-z0-9-]+)'
end
function __reedid_limits
    # what it says of a name that is no limit
    reedid limit '?' - -o - 2>&1 </dev/null | sed -n 's/.*there are //p' | string split ', '
end
function __reedid_samples
    reedid sample | string match -rg '^([a-z0-9][a-z0-9-]*) '
end
function __reedid_connectors
    reedid displays 2>/dev/null | string match -rg '^card[0-9]+-(.*): '
end
function __reedid_forms
    reedid convert --help | sed -n 's/^  --to .*{\(.*\)}.*/\1/p' | tr ',' '\n'
end
# __reedid_at COMMAND: at the first word behind this command
function __reedid_at
    set -l words (commandline -opc)
    test (count $words) -eq 2; and test "$words[2]" = $argv[1]
end
function __reedid_behind
    test (commandline -opc)[-1] = $argv[1]
end
complete -c reedid -n 'test (count (commandline -opc)) -eq 1' -f -a '(__reedid_commands) help'
complete -c reedid -n 'test (count (commandline -opc)) -gt 1; and string match -q -- "-*" (commandline -ct)' -f -a '(__reedid_options)'
complete -c reedid -n '__reedid_at limit; or __reedid_behind --limit' -f -a '(__reedid_limits)'
complete -c reedid -n '__reedid_at sample' -f -a '(__reedid_samples)'
complete -c reedid -n '__reedid_at help' -f -a '(__reedid_commands)'
complete -c reedid -n '__reedid_behind --to' -f -a '(__reedid_forms)'
complete -c reedid -n 'string match -q "sample:*" (commandline -ct)' -f -a 'sample:(__reedid_samples)'
complete -c reedid -n 'string match -q "connector:*" (commandline -ct)' -f -a 'connector:(__reedid_connectors)'
complete -c reedid -n 'string match -q "override:*" (commandline -ct)' -f -a 'override:(__reedid_connectors)'
complete -c reedid -n 'string match -q "i2c:*" (commandline -ct)' -f -a 'i2c:(__reedid_connectors)'
