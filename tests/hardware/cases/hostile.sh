# Units with the worst texts that a string descriptor holds are plugged in and pulled out while programs
# look, show, store and forward what they play. None ends, hangs or grows, nothing that is shown reaches a
# terminal as anything but text, and each unit stays behind the strip that it was given.
source "$RIG/guest/mixer.sh"
units=12 plugs=30
[ -z "$RIG_LONG" ] || units=30 plugs=200
surfaces=$((units - units / 8)) # the other ones are of no model that is known
program=$BUILD_DIR/app/sorvex-mackie-setup

# Checks what a terminal would get: UTF-8 without control characters, with no turned direction that leaves its line.
expect_harmless() {
    "$@" >"$work/shown" 2>&1 || { cat -v "$work/shown" && false; }
    python3 -IS - "$work/shown" <<'END' || { echo "what \"$*\" shows may do harm" && cat -v "$work/shown" && false; }
import re, sys
shown = open(sys.argv[1], "rb").read().decode()
assert not re.search(r"[\0-\t\v-\x1f\x7f-\x9f\u200e\u200f\u202a-\u202e\u2066\u2067]", shown)
assert all(line.count("\u2068") == line.count("\u2069") for line in shown.split("\n"))
END
}

# strips STATUS: what each strip hears when every unit presses a key that is its own; all that are surfaces.
strips() {
    wait_until "each strip hears its unit" eval "press_all $1 && [ \$(heard $1 | wc -l) -ge $surfaces ]"
    heard "$1"
}

press_all() {
    local unit
    for ((unit = 0; unit < units; unit++)); do
        tell units play "$unit" "$1$(printf %02X "$unit")7F"
    done
    sleep 1
}

heard() { sed -n "s/^\([0-9]*\) heard $1/\1 /p" "$work/mixer" | sort -nu; }

memory() { awk '/^VmRSS/ { print $2 }' "/proc/$1/status"; }

size() { echo "$(memory "$1") KiB, $(find "/proc/$1/fd" -type l | wc -l) descriptors"; }

# Gives all surfaces a place in group 0, in whatever order they are known.
place_all() {
    midisetup export | python3 -IS -c '
import json, sys
studio = json.load(sys.stdin)
for position, device in enumerate(studio["devices"]):
    device["properties"] |= {sys.argv[1]: 0, sys.argv[2]: position}
json.dump(studio, sys.stdout)' $group_key $position_key >"$work/placed"
    midisetup import --yes "$work/placed" >/dev/null
}

# All that is known, by its names, in whatever order it came.
known() { tree | sort; }

are_all_there() { [ "$(surfaces uniqueID | wc -l)" -eq $surfaces ]; }

dmesg --console-level emerg # it has much to say of such units
/usr/sbin/chroot /proc/1/root /bin/modprobe vhci-hcd
mkfifo "$work/units.hand"
nice -n -10 python3 -IB "$RIG/guest/usb_units.py" $units <>"$work/units.hand" >"$work/units" 2>&1 &
for ((unit = 0; unit < units; unit++)); do
    tell units plug "$unit" "$unit"
done
wait_until "all surfaces are there" are_all_there
place_all
start_ports
start_mixer $surfaces
before=$(strips 90)
known >"$work/known"
ports_before=$(size $ports)

"$RIG/../support/with-display" bash -c 'until [ -e "$0" ]; do timeout 300 "$@" || exit; echo stored; done' \
    "$work/calm" "$RIG/guest/press-ok" "$program" >"$work/stored" 2>&1 &
display=$!
until grep -q stored "$work/stored"; do # while all is calm: a display needs long to start in this machine
    kill -0 $display
    sleep 1
done
"$BUILD_DIR/tests/hardware/scan-loop" "$work/calm" >"$work/scans" 2>&1 &
scans=$!
tell units commotion $plugs 1
started=$SECONDS looks=0
until said units calm; do
    for look in list surfaces ports doctor; do
        expect_harmless midisetup $look
        looks=$((looks + 1))
    done
done
echo "figure: $plugs plugs took $((SECONDS - started)) s"
touch "$work/calm"
wait $scans || { cat "$work/scans" && false; }
wait $display || { cat "$work/stored" && false; }
wait_until "all surfaces are there" are_all_there
expect_equal "what each strip hears" "$before" "$(strips 91)"
known | diff "$work/known" -
expect_equal "programs that crashed" "" "$(dmesg | sed -n '/segfault\|traps:/p')"
echo "figure: $(wc -l <"$work/mixer") events, $(cat "$work/scans"), $looks looks, $(grep -c stored "$work/stored") times Ok"
echo "figure: surface-ports: $ports_before before, $(size $ports) behind"
[ $(($(memory $ports) - ${ports_before%% *})) -lt 1000 ] || { echo "surface-ports grew" && false; }
