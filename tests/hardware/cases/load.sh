# What four units and a mixer play at once passes through surface-ports as it does without them; while
# nothing is played, surface-ports uses no processor time.
"$BUILD_DIR/tests/hardware/load-through" 5 >"$work/figures" 2>&1 &
load=$!
wait_until "the units are there" grep -q '"Load Units"' /proc/asound/seq/clients
for number in 1 2 3 4; do
    wait_until "unit $number" eval "midisetup list | grep -q 'Unit $number'"
    midisetup add external "Desk $number" --manufacturer Mackie --model "Mackie Control"
    midisetup connect "Load Units Unit $number" "Desk $number"
    midisetup place "Desk $number" 0 "$number"
done
wait_until "the direct connection is measured" grep -q directly "$work/figures"
"$BUILD_DIR/tools/surface-ports/surface-ports" &
ports=$!
wait $load || { cat "$work/figures" && false; }
wait_until "surface-ports rests" rests $ports
sed 's/^/figure: /' "$work/figures"
