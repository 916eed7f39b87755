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

midisetup place "MCU Pro USB" 3 7

# Where it is on this machine, as the kernel tells it.
card=$(card_at 0) client=$(client_at 0)
number=${card#card} id=$(cat "/sys/class/sound/$card/id")
expect_equal "the ports in the list" "$client:0 $client:1 $client:2 $client:3" \
    "$(midisetup list | sed -n 's/^    Port .* at //p' | xargs)"
expect_equal "where its third port is" "kestrin.alsa.client: $client
kestrin.alsa.port: 2
kestrin.alsa.card: $number
kestrin.alsa.cardID: \"$id\"
kestrin.alsa.rawMIDI: \"hw:$number,0,2\"
kestrin.usb.path: \"dummy_hcd.0-1\"
kestrin.usb.serial: \"SN001\"
USBVendorProduct: 0a73:0006" "$(midisetup show "MCU Pro USB:Port 3" | sed -n 's/^  \(.*\)  (now)$/\1/p')"
for direction in source destination; do
    expect_equal "the surface's $direction" "$client 0 $number $id hw:$number,0,0 dummy_hcd.0-1 SN001 $((0x0a730006))" \
        "$(midisetup surfaces --json | python3 -IS -c '
import json, sys
print(*json.load(sys.stdin)[0][sys.argv[1]].values())' $direction)"
done
mixer_sees="group 3, position 7: MCU Pro USB"
expect_equal "what a mixer reads" "$mixer_sees, at $client:0" "$("$BUILD_DIR/examples/mixer")"

unplug surface
expect_equal "what a mixer reads without the unit" "$mixer_sees" "$("$BUILD_DIR/examples/mixer")"
expect_equal "where it is" "" "$(midisetup show "MCU Pro USB:Port 3" | grep 'kestrin\|(now)' || true)"
expect_equal "surfaces without the unit" "" "$(surfaces name)"
expect_equal "what is known without the unit" "Interfaces
  MCU Pro USB (offline), surface: group 3, position 7
$ports" "$(tree)"

# The only one with this serial is itself wherever it is plugged in.
plug surface 4
expect_equal "surfaces at another place" "MCU Pro USB Port 1 | 3 | 7" "$(surfaces name group storedPosition)"
