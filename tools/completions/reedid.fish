# fish completion for reedid: commands and options come from its own help, so that they are never out of date.
function __reedid_commands
    reedid --help | string match -rg '^  ([a-z][a-z0-9-]+)  +(.*)$' | paste - -
end
function __reedid_options
    reedid (commandline -opc)[2] --help 2>/dev/null | string match -rg '^  [^ ]*(--[a-z0-9-]+)'
end
complete -c reedid -n 'test (count (commandline -opc)) -eq 1' -f -a '(__reedid_commands)'
complete -c reedid -n 'test (count (commandline -opc)) -gt 1; and string match -q -- "-*" (commandline -ct)' -f -a '(__reedid_options)'
