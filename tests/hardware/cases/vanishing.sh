# Units come and go while others scan, in one process and in many. No scan shows half a unit or fails, and
# when all is calm everything is there, once.
pull_and_push() {
    local round
    for round in {1..6}; do
        echo >"$gadgets/left/UDC"
        echo >"$gadgets/right/UDC"
        power_unit right 2
        power_unit left 0
        # Now and then the unit is pulled before its ports are there, now and then after.
        [ $((round % 3)) -eq 0 ] || wait_until "left appears" card_at 0 >/dev/null
        [ $((round % 2)) -eq 0 ] || wait_until "right appears" has_ports 2 4
    done
}

make_unit left 4 serial=SN001
make_unit right 4 serial=SN002
plug left 0
plug right 2
before=$(surfaces name uniqueID | sort)
"$BUILD_DIR/tests/hardware/scan-loop" "$work/calm" 2>&1 &
scans=$!
pull_and_push &
commotion=$!
while kill -0 $commotion 2>/dev/null; do
    midisetup surfaces >/dev/null
done
wait $commotion
touch "$work/calm"
wait $scans

unplug left
unplug right
plug right 0
plug left 2
expect_equal "surfaces when all is calm" "$before" "$(surfaces name uniqueID | sort)"
expect_equal "devices" 2 "$(tree | grep -c "^  [^ ]")"
