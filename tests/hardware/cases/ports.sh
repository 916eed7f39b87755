# Four units behind surface ports, and a mixer that is connected once: each strip stays where the user put
# it, whatever is unplugged, plugged in other order and other places, or given another position.
source "$RIG/guest/mixer.sh"

make_unit main 4 serial=SN001
for unit in left right; do # equal but for the serial
    make_unit $unit 1 manufacturer="Example Works" product="One Port" vendor=1d6b id=0104 serial=$unit
done
make_unit wing 1 manufacturer="Example Works" product="Other Port" vendor=1d6b id=0105
switch_on main 0 main
switch_on left 1 extender
switch_on right 2 extender
switch_on wing 3 extender
midisetup set "MCU Pro USB" name Main
midisetup place Main 0 20
set_up_extender() { # NAME INTERFACE POSITION
    midisetup add external "$1" --manufacturer Mackie --model "Mackie Control Exp"
    midisetup connect "$2:Port 1" "$1"
    midisetup place "$1" 0 "$3"
}
set_up_extender Left "One Port" 10
set_up_extender Right "One Port 2" 30
set_up_extender Wing "Other Port" 40

start_ports
wait_until "four ports are there" has_ports_named "1 Left
2 Main
3 Right
4 Wing"
start_mixer 4
expect_order hello left main right wing

# Switched on, a unit shakes hands by itself, so nothing is asked here: the two equal ones are each at the
# other's place now, and have each other's sequencer clients.
for unit in main left right wing; do
    switch_off $unit
done
switch_on right 1 extender
switch_on wing 5 extender
switch_on left 2 extender
switch_on main 6 main
place=0
for unit in left main right wing; do
    place=$((place + 1))
    wait_until "$unit is greeted when it is switched on" shows $unit "$place hello"
done
expect_strips left main right wing

# One is off, and the others do not notice.
switch_off main
expect_strips left - right wing
midisetup place Main 0 50
midisetup place Wing 0 5
wait_until "the ports are called anew" has_ports_named "1 Wing
2 Left
3 Right
4 Main"
expect_order moved wing left right -
switch_on main 0 main
wait_until "main is greeted when it is back" shows main "4 moved"
expect_strips wing left right main

# A unit that is added or taken appends or removes a port.
midisetup place Left 1 0
wait_until "group 0 has three" has_ports_named "1 Wing
2 Right
3 Main"
expect_order fewer wing right main
midisetup place Left 0 45
wait_until "group 0 has four" has_ports_named "1 Wing
2 Right
3 Left
4 Main"
expect_order more wing right left # the mixer is not connected to the fourth, which is a new one
