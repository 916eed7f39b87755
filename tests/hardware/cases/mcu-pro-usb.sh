# Four ports, one surface: its first port alone.
ports="    Port 1 (in, out)
    Port 2 (in, out)
    Port 3 (in, out)
    Port 4 (in, out)"

make_unit surface 4 serial=SN001
plug surface 0
expect_equal "the new unit alone, without the kernel's own clients" "Interfaces
  MCU Pro USB, surface: new, no group yet
$ports" "$(tree)"
expect_equal "manufacturer" "LOUD Technologies, Inc." "$(midisetup get "MCU Pro USB" manufacturer)"
expect_equal "model" "MCU Pro USB" "$(midisetup get "MCU Pro USB:Port 4:source" model)"
expect_equal "driver" "snd-usb-audio" "$(midisetup get "MCU Pro USB" driver)"
expect_equal "surfaces" "MCU Pro USB Port 1 | 20 | 0" "$(surfaces name type group)"
expect_equal "its position is its unique ID" "$(surfaces uniqueID)" "$(surfaces storedPosition)"

settle "MCU Pro USB" 3 7
unplug surface
expect_equal "surfaces without the unit" "" "$(surfaces name)"
expect_equal "what is known without the unit" "Interfaces
  MCU Pro USB (offline), surface: group 3, position 7
$ports" "$(tree)"

# The only one with this serial is itself wherever it is plugged in.
plug surface 4
expect_equal "surfaces at another place" "MCU Pro USB Port 1 | 3 | 7" "$(surfaces name group storedPosition)"
