# Sourced by each case: what is asked of the programs, and of what they answer.

midisetup() { "$BUILD_DIR/tools/midisetup/midisetup" "$@"; }

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
