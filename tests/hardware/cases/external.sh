# A surface with MIDI sockets, cabled to the second port of an interface.
make_unit interface 4 manufacturer="Example Works" product="Four Ports" vendor=1d6b id=0104 serial=42
plug interface 2
midisetup add external "Mackie Control" --manufacturer Mackie --model "Mackie Control"
midisetup add external "Right Wing" --manufacturer Mackie --model "Mackie Control Exp"
midisetup connect "Four Ports:Port 2" "Mackie Control"
midisetup connect "Four Ports:Port 4" "Right Wing"
expect_equal "surfaces" "Mackie Control on Four Ports output Port 2 | 20
Right Wing on Four Ports output Port 4 | 21" "$(surfaces name type)"

settle "Right Wing" 4 1
unplug interface
expect_equal "surfaces without the interface" "" "$(surfaces name)"
plug interface 0
expect_equal "surfaces with the interface back" "Mackie Control on Four Ports output Port 2 | 0
Right Wing on Four Ports output Port 4 | 4" "$(surfaces name group)"
expect_equal "settings" "4 1" "$(settings_of "Right Wing")"
