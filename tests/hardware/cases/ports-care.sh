# What surface ports do about other instances, other programs and the database, and what they pass.
source "$RIG/guest/mixer.sh"

make_unit first 4 serial=SN001
make_unit second 4 serial=SN002
switch_on first 0 main
switch_on second 1 main
midisetup set "MCU Pro USB" name First
midisetup set "MCU Pro USB 2" name Second
midisetup place First 0 1
midisetup place Second 0 2

# A unit that another program holds is named, once, and taken when it is free.
device=/dev/snd/midiC$(card_at 1 | tr -d a-z)D0
sleep infinity <>"$device" &
holder=$!
wait_until "the unit is held" eval '[ "$(readlink /proc/$holder/fd/0)" = "$device" ]'
start_ports
start_mixer 2
wait_until "the unit that is held is named" said ports \
    "Second is held by another program; it is taken when it is free."
wait_until "the other one is greeted" shows first "1 hello"
kill $holder
expect_order free first second

# Nothing of its own is in the database: the mixer's ports are the only ones of programs.
expect_equal "what is known" "Stand-in Mixer Strips 1 (in)
  Stand-in Mixer Strips 1 (out)
  Stand-in Mixer Strips 2 (in)
  Stand-in Mixer Strips 2 (out)" "$(tree | sed '1,/^Ports of programs/d' | sort | sed '1s/^  //')"

# A second instance ends.
code=0
"$BUILD_DIR/tools/surface-ports/surface-ports" >"$work/second-instance" 2>&1 || code=$?
expect_equal "a second instance" "1 surface-ports is running already." "$code $(cat "$work/second-instance")"

# A long message arrives whole, each way.
long=F0007F$(printf '%02X' {0..127} {0..127} {0..127} {0..127} {0..127} {0..127} {0..127} {1..100})F7
tell mixer send 1 "$long"
wait_until "the unit hears the long message" said first "1 heard $long"
tell first 1 send "$long"
wait_until "the mixer hears the long message" said mixer "1 heard $long"

# Two of the ports joined: an event is passed once, and comes to nobody else. What is sent behind it on the
# other pair has come, so anything that it caused would have come too.
tell mixer join 1 2
tell first 1 press 10
tell second 1 press 11
wait_until "strip 2 hears its unit" said mixer "2 heard 901100"
tell mixer send 1 901200
tell mixer send 2 901300
wait_until "the second unit hears its strip" said second "1 lamp 13 off"
wait_until "the first unit hears its strip" said first "1 lamp 12 off"
expect_equal "what was heard of joined ports" "1 heard 90107F
1 heard 901000
2 heard 90117F
2 heard 901100" "$(grep ' heard 901' "$work/mixer" | sort -s -k 1,1)"
expect_equal "what the units heard" "1 lamp 12 off
1 lamp 13 off" "$(grep -h ' lamp 1' "$work/first" "$work/second")"

# The database is locked: a unit that comes back elsewhere is served all the same.
mkfifo "$work/lock"
python3 -IS -c '
import sqlite3, sys
file = sqlite3.connect(sys.argv[1], isolation_level=None)
file.execute("BEGIN IMMEDIATE")
print("locked", flush=True)
open(sys.argv[2]).read()' "$KESTRIN_MIDI_DATABASE" "$work/lock" >"$work/locker" &
locker=$!
wait_until "the database is locked" said locker locked
switch_off second
switch_on second 4 main
wait_until "the unit is greeted while the database is locked" shows second "2 free"
: >"$work/lock"
wait $locker

# replace_database FILE: gives it the database's name.
replace_database() {
    rm -f "$KESTRIN_MIDI_DATABASE"-*
    mv "$1" "$KESTRIN_MIDI_DATABASE"
}

# A damaged one takes its place, then one in which the two units have changed places.
python3 -IS -c '
import sqlite3, sys
file, copy = map(sqlite3.connect, sys.argv[1:])
file.backup(copy)' "$KESTRIN_MIDI_DATABASE" "$work/other.sqlite3"
KESTRIN_MIDI_DATABASE=$work/other.sqlite3 midisetup place Second 0 0
echo "no database at all" >"$work/damaged"
replace_database "$work/damaged"
wait_until "the damage is told" grep -q "is damaged.* The ports stay as they are.$" "$work/ports"
expect_strips first second
replace_database "$work/other.sqlite3"
wait_until "the ports are as the new database says" has_ports_named "1 Second
2 First"
expect_order replaced second first
expect_equal "how much was said" 2 "$(wc -l <"$work/ports")"

# It ends when it is asked to, and its ports with it.
code=0
kill $ports
wait $ports || code=$?
expect_equal "its end" "0 " "$code $(names_of_ports)"
