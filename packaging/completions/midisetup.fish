# SPDX-License-Identifier: MIT
# fish completion of midisetup, which knows its own commands, options and objects.
function __midisetup_complete
    set -l words (commandline -opc)
    set -l lines (command $words[1] --complete $words[2..] (commandline -ct) 2>/dev/null)
    if string match -q \t'*' -- $lines[1]
        __fish_complete_path (commandline -ct)
    else
        printf '%s\n' $lines
    end
end
complete -c midisetup -f -a '(__midisetup_complete)'
