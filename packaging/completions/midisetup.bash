# SPDX-License-Identifier: MIT
# bash completion of midisetup, which knows its own commands, options and objects.
_midisetup() {
    local cur words cword line candidate
    _get_comp_words_by_ref -n : cur words cword
    # What the shell would take off before the program sees the words.
    words=("${words[@]//[\\\"\']/}")
    local typed=${words[cword]} shown='' behind
    # Outside of quotation marks the shell completes only what stands behind a colon.
    if [[ $cur != [\"\']* && $cur == *[!\\]:* ]]; then
        behind=${cur##*[!\\]:}
        shown=${typed%"${behind//[\\\"\']/}"}
    fi
    COMPREPLY=()
    while IFS= read -r line; do
        candidate=${line%%$'\t'*}
        if [[ -z $candidate ]]; then
            compopt -o default
        elif [[ $candidate == "$typed"* ]]; then
            COMPREPLY+=("${candidate#"$shown"}")
        fi
    done < <(command "$1" --complete "${words[@]:1:cword}" 2>/dev/null)
    # The shell quotes what it puts in as it quotes the name of a file.
    [[ ${#COMPREPLY[@]} -eq 0 ]] || compopt -o filenames
}
complete -F _midisetup midisetup
