# The machine itself: if this fails, so does everything else, and the programs are not to blame.
names_at() {
    awk -v client="$(client_at "$1")" '/^Client/ { here = $2 == client } here' /proc/asound/seq/clients |
        sed -n 's/.*: "\(.*\)" .*/\1/p'
}

make_unit first 4 serial=SN001
make_unit second 1 manufacturer="Example Works" product="Two  Words $(printf '\303\234')" vendor=1d6b id=0104
plug first 0
plug second 5
expect_equal "names of the first unit" "MCU Pro USB
MCU Pro USB MIDI 1
MCU Pro USB MIDI 2
MCU Pro USB MIDI 3
MCU Pro USB MIDI 4" "$(names_at 0)"
expect_equal "names of the second unit" "Two  Words Ü
Two  Words Ü MIDI 1" "$(names_at 5)"

unplug first
unplug second
plug second 0
plug first 5
expect_equal "cards after plugging in the other order" "card1 card0" "$(card_at 5) $(card_at 0)"
expect_equal "clients, with none for the units' own cards" "0 14 16 20" \
    "$(awk '/^Client +[0-9]/ { print $2 }' /proc/asound/seq/clients | xargs)"
