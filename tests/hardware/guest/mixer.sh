# Sourced by the cases with surface ports: units that are played at the far ends of their cables, and the
# mixer that is connected to the ports once. What each says stands in a file of $work that is named after it:
# a unit of gadgets.sh, "ports" or "mixer".

declare -A players=() # the process that plays a unit

# is_linked PLACE: whether surface-ports hears the unit.
is_linked() {
    awk -v unit="$(client_at "$1")" '
        /^Client/ { here = $2 == unit; if (/"Surface Ports"/) keeper = $2 }
        here && /Connecting To:/ { linked = linked " " $3 }
        END { exit !(keeper && linked ~ " " keeper ":") }' /proc/asound/seq/clients
}

# switch_on UNIT PLACE MODEL: plugs it in and plays it, as a "main" or an "extender". It speaks first when it
# is heard: real ones take seconds to start, and the kernel drops what comes while an input is being opened.
switch_on() {
    local unit=$1
    plug "$unit" "$2"
    [ -z "${ports:-}" ] || wait_until "$unit is heard" is_linked "$2"
    [ -p "$work/$unit.hand" ] || mkfifo "$work/$unit.hand"
    "$BUILD_DIR/examples/rack" "$3=hw:$(cat "$gadgets/$unit/functions/midi.usb0/index"),0" \
        <>"$work/$unit.hand" >"$work/$unit" 2>&1 &
    players[$unit]=$!
}

switch_off() {
    unplug "$1"
    wait "${players[$1]}" || true # it says that its cable was pulled out
}

# start_ports: starts surface-ports as the process $ports.
start_ports() {
    "$BUILD_DIR/tools/surface-ports/surface-ports" >"$work/ports" 2>&1 &
    ports=$!
    wait_until "the ports of group 0 are there" grep -q '"Surfaces 0"' /proc/asound/seq/clients
}

# start_mixer COUNT: connects the mixer to that many ports of group 0.
start_mixer() {
    mkfifo "$work/mixer.hand"
    "$BUILD_DIR/examples/stand-in" "Surfaces 0" "$1" <>"$work/mixer.hand" >"$work/mixer" 2>&1 &
}

# tell NAME WORDS...: a line on the standard input of a unit's player (which numbers its one unit 1) or
# of the mixer.
tell() { echo "${*:2}" >"$work/$1.hand"; }

# said NAME LINE: whether it said just this.
said() { grep -qxF -- "$2" "$work/$1"; }

# shows UNIT TEXT: whether its display begins with the text and a blank.
shows() {
    local last
    last=$(grep '^1 display "' "$work/$1" | tail -n 1)
    [[ $last == "1 display \"$2 "* ]]
}

# names_of_ports: the names of the ports of group 0, by number, a line each.
names_of_ports() {
    awk '/^Client/ { here = index($0, "\"Surfaces 0\"") } here' /proc/asound/seq/clients |
        sed -n 's/^  Port *[0-9]* : "\(.*\)" .*/\1/p' | sed '/^Kestrin MIDI/d'
}

has_ports_named() { [ "$(names_of_ports)" = "$1" ]; }

# expect_strips UNIT...: the mixer's n-th strip leads to the n-th unit, "-" being one that is off, and back.
# Tells the units nothing but what it asks, so they must have been connected already.
faders_moved=0
expect_strips() {
    local place=0 unit position
    for unit in "$@"; do
        place=$((place + 1)) faders_moved=$((faders_moved + 1))
        [ "$unit" != - ] || continue
        position=$((faders_moved * 10))
        tell mixer fader $place 2 $position
        wait_until "$unit moves the fader of strip $place" said "$unit" "1 fader 2 $position"
        tell "$unit" 1 move 3 $((position + 1))
        wait_until "strip $place hears $unit" said mixer "$place fader 3 $((position + 1))"
    done
}

# expect_order TEXT UNIT...: each unit is behind the port of its place. Asks again until it is so: nothing
# tells the mixer that the user gave the units other positions.
expect_order() {
    local text=$1 place=0 unit
    shift
    for unit in "$@"; do
        place=$((place + 1))
        [ "$unit" = - ] || wait_until "$unit is at strip $place" \
            eval "tell mixer greet $text && sleep 0.3 && shows $unit '$place $text'"
    done
    expect_strips "$@"
}
