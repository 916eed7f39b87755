# The rack as ports of a program, surface-ports and the stand-in, as docs/mixers.md and docs/rack.md show them.
source "$RIG/guest/mixer.sh"
PATH=$BUILD_DIR/examples:$BUILD_DIR/tools/surface-ports:$PATH

start_rack() {
    rack main extender extender <>"$work/rack.hand" >"$work/rack" 2>&1 &
    rack=$!
    wait_until "the rack is there" grep -q '"3 Mackie Control Exp"' /proc/asound/seq/clients
}

# expect_displays TEXT UNIT...: greeted, the unit that the n-th port leads to shows n and the text.
expect_displays() {
    local text=$1 place=0 unit
    for unit in "${@:2}"; do
        place=$((place + 1))
        wait_until "unit $unit shows $place $text" \
            eval "tell mixer greet $text && sleep 0.3 && grep -q '^$unit display \"$place $text ' '$work/rack'"
    done
}

mkfifo "$work/rack.hand"
start_rack
midisetup add external Main --manufacturer Mackie --model "Mackie Control"
midisetup add external Left --manufacturer Mackie --model "Mackie Control Exp"
midisetup add external Right --manufacturer Mackie --model "Mackie Control Exp"
midisetup connect "Rack 1 Mackie Control" Main
midisetup connect "Rack 2 Mackie Control Exp" Left
midisetup connect "Rack 3 Mackie Control Exp" Right
midisetup place Left 0 1
midisetup place Main 0 2
midisetup place Right 0 3
start_ports
start_mixer 3 # stand-in "Surfaces 0" 3
expect_displays hello 2 1 3

kill $rack
wait $rack || true
start_rack
expect_displays again 2 1 3
midisetup place Left 0 4
expect_displays moved 1 3 2
client=$(awk '/"Surfaces 0"/ { print $2 }' /proc/asound/seq/clients)
rack_client=$(awk '/"Rack"/ { print $2 }' /proc/asound/seq/clients)
expect_equal "midisetup ports" "Surfaces 0 ($client:0)  1 Main  <-> Main at $rack_client:0
    connected: Stand-in Mixer
Surfaces 0 ($client:1)  2 Right  <-> Right at $rack_client:2
    connected: Stand-in Mixer
Surfaces 0 ($client:2)  3 Left  <-> Left at $rack_client:1
    connected: Stand-in Mixer" "$(midisetup ports)"
