# Who waits to be told of changes uses no processor time: when all is told, nothing wakes it but the next one.
make_unit unit 4 serial=SN001
plug unit 0
midisetup place "MCU Pro USB" 0 1
"$BUILD_DIR/examples/watch" >"$work/watch" &
watch=$!
"$BUILD_DIR/tools/surface-ports/surface-ports" &
ports=$!
wait_until "surface-ports has its port" grep -q '"1 MCU Pro USB"' /proc/asound/seq/clients
wait_until "surface-ports rests" rests $ports
wait_until "watch rests" rests $watch

midisetup place "MCU Pro USB" 0 2
wait_until "watch tells what another process stored" grep -q 'grouppos = 2$' "$work/watch"
unplug unit
wait_until "watch tells that the unit is gone" grep -q 'offline = 1$' "$work/watch"
wait_until "surface-ports rests again" rests $ports
