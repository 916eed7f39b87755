# Sourced by each case: what is asked of the programs, and of what they answer.

group_key=com_velt_sorvex_control_surface_groupid
position_key=com_velt_sorvex_control_surface_grouppos

skip() {
    echo "skipped: $1"
    exit 77
}

# expect_equal WHAT WANTED GOT
expect_equal() {
    [ "$2" = "$3" ] && return
    printf '%s\n--- wanted\n%s\n--- got\n%s\n' "$1" "$2" "$3"
    return 1
}

# The tool, which has nothing to complain about in any case.
midisetup() {
    local errors=$work/errors.$BASHPID code=0
    "$BUILD_DIR/tools/midisetup/midisetup" "$@" 2>"$errors" || code=$?
    [ $code -eq 0 ] && [ ! -s "$errors" ] && return
    { echo "midisetup $* ended with $code and said:" && cat "$errors"; } >&2
    return 1
}

# A line for each surface that the program would find, in its order.
#   surfaces FIELD...    name, uniqueID, type, group, storedPosition ..., or one that its source has
surfaces() {
    midisetup surfaces --json | python3 -IS -c '
import json, sys
for surface in json.load(sys.stdin):
    print(*((surface["source"] | surface)[field] for field in sys.argv[1:]), sep=" | ")' "$@"
}

# Everything that is known, as a tree without the unique IDs and the sequencer's numbers.
tree() {
    midisetup list | sed -e 's/  #-\{0,1\}[0-9]*$//' -e 's/  at [0-9:]*$//'
}

nanoseconds_used() { awk '{ used += $1 } END { print used }' /proc/"$1"/task/*/schedstat; }

# rests PROCESS: whether nothing wakes it for 4 s. For wait_until, as the news of before may still wake it.
rests() {
    local before
    before=$(nanoseconds_used "$1")
    sleep 4
    [ "$before" = "$(nanoseconds_used "$1")" ]
}
