# Sourced in the machine: makes USB MIDI units out of the kernel's gadget drivers and plugs them into its
# emulated USB ports. A unit has a name of its own here, which nothing but these functions knows; a place
# is the number of an emulated USB controller, 0 to 7, each with one port.

gadgets=/sys/kernel/config/usb_gadget
sequencer_bus=/sys/bus/snd_seq

# wait_until WHAT COMMAND...: until the command succeeds; fails after a minute and says what it waited for.
wait_until() {
    local what=$1 deadline=$((SECONDS + 60))
    shift
    until "$@"; do
        if [ $SECONDS -ge $deadline ]; then
            echo "waited in vain until $what" >&2
            return 1
        fi
        sleep 0.05
    done
}

# make_unit UNIT PORTS [KEY=TEXT...]: a unit that is not plugged in yet. The keys are manufacturer, product,
# serial (without it the unit has none), vendor and id (hexadecimal); they default to an MCU Pro USB.
make_unit() {
    local unit=$1 ports=$2 key
    local -A text=([manufacturer]="LOUD Technologies, Inc." [product]="MCU Pro USB" [vendor]=0a73 [id]=0006)
    shift 2
    for key in "$@"; do
        text[${key%%=*}]=${key#*=}
    done
    mkdir "$gadgets/$unit" "$gadgets/$unit/strings/0x409"
    cd "$gadgets/$unit"
    echo "0x${text[vendor]}" >idVendor
    echo "0x${text[id]}" >idProduct
    printf %s "${text[manufacturer]}" >strings/0x409/manufacturer
    printf %s "${text[product]}" >strings/0x409/product
    [ -z "${text[serial]:-}" ] || printf %s "${text[serial]}" >strings/0x409/serialnumber
    mkdir functions/midi.usb0 configs/c.1
    echo "$ports" >functions/midi.usb0/in_ports
    echo "$ports" >functions/midi.usb0/out_ports
    echo $((32 - $(ls "$gadgets" | wc -l))) >functions/midi.usb0/index
    ln -s functions/midi.usb0 configs/c.1/
    cd /
}

# The sound card of what is plugged in at PLACE, e.g. "card1"; fails if there is none.
card_at() {
    local card
    for card in /sys/devices/platform/dummy_hcd."$1"/usb*/*-1/*/sound/card*; do
        [ -d "$card" ] && echo "${card##*/}" && return
    done
    return 1
}

# The sequencer client of what is plugged in at PLACE, by its card.
client_at() {
    local card
    card=$(card_at "$1") && echo $((16 + 4 * ${card#card}))
}

ports_of_client() {
    local kind number rest client ports=0
    while read -r kind number rest; do
        [ "$kind" != Client ] || client=$number
        [ "$kind" != Port ] || [ "$client" != "$1" ] || ports=$((ports + 1))
    done <<<"$(</proc/asound/seq/clients)" # read at once, as it changes while others look, too
    echo $ports
}

# A card that appears just while power_unit keeps the sequencer's drivers away has missed them.
bind_sequencer() {
    local device=seq-midi-${1#card}-0
    [ ! -e $sequencer_bus/devices/$device ] || [ -e $sequencer_bus/devices/$device/driver ] ||
        echo $device >$sequencer_bus/drivers/snd_seq_midi/bind
}

# has_ports PLACE PORTS: whether that many sequencer ports are there.
has_ports() {
    local card client
    card=$(card_at "$1") || return 1
    bind_sequencer "$card" 2>/dev/null || true # the kernel may have been faster
    client=$(client_at "$1") || return 1
    [ "$(ports_of_client "$client")" -eq "$2" ]
}

# The unit's own side of the cable is a sound card of the same machine. It is given one of the last card
# numbers, and no sequencer client: drivers of the sequencer are not bound while it appears.
power_unit() {
    local unit=$1 place=$2
    echo 0 >$sequencer_bus/drivers_autoprobe
    echo "dummy_udc.$place" >"$gadgets/$unit/UDC"
    echo 1 >$sequencer_bus/drivers_autoprobe
}

# plug UNIT PLACE: plugs it in and waits until the sequencer shows all its ports.
plug() {
    local unit=$1 place=$2
    power_unit "$unit" "$place"
    wait_until "$unit appears at $place" has_ports "$place" "$(cat "$gadgets/$unit/functions/midi.usb0/in_ports")"
}

nothing_at() { ! card_at "$1" >/dev/null; }

# unplug UNIT: pulls it out and waits until its card is gone.
unplug() {
    local controller place
    controller=$(cat "$gadgets/$1/UDC")
    place=${controller#dummy_udc.}
    echo >"$gadgets/$1/UDC"
    wait_until "$1 is gone from $place" nothing_at "$place"
}

destroy_all_units() {
    local unit folder
    for unit in $(ls "$gadgets"); do
        folder=$gadgets/$unit
        [ -z "$(cat "$folder/UDC")" ] || unplug "$unit"
        rm "$folder/configs/c.1/midi.usb0"
        rmdir "$folder/configs/c.1" "$folder/functions/midi.usb0" "$folder/strings/0x409" "$folder"
    done
}
