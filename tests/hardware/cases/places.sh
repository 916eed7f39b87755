# Equal units that no serial tells apart: because they have none, or because all have the same. Each is
# known by its place then.
exchange_at_places() { # UNIT UNIT NOTES: NOTES is how many of the doctor's notes name both
    local left=$1 right=$2 notes
    plug "$left" 0
    plug "$right" 3
    notes=$(midisetup doctor | grep -c 'by their USB port alone.* no serial number: MCU Pro USB, MCU Pro USB 2\.' || true)
    expect_equal "the doctor's notes" "$3" "$notes"
    settle "MCU Pro USB" 1 10
    settle "MCU Pro USB 2" 2 20

    unplug "$left"
    unplug "$right"
    plug "$right" 3 # first now, so card and client are those that the other had
    expect_equal "$right alone" "MCU Pro USB 2 Port 1 | 2 | 20" "$(surfaces name group storedPosition)"
    plug "$left" 0
    unplug "$right"
    expect_equal "$left alone" "MCU Pro USB Port 1 | 1 | 10" "$(surfaces name group storedPosition)"

    # At a place where none of them was, it is the one that is left over.
    plug "$right" 5
    expect_equal "$right at a new place" "MCU Pro USB 2 Port 1 | 2" "$(surfaces name group | sed 1d)"
    destroy_all_units
}

make_unit without 4
make_unit without-too 4
exchange_at_places without without-too 1

rm "$KESTRIN_MIDI_DATABASE"*
make_unit same 4 serial=0000
make_unit same-too 4 serial=0000
exchange_at_places same same-too 0
