# Four equal units without serials, plugged in again in all orders of their four places, or in every fourth of
# them, whichever of the units stands where: what the user set stays with the place.
plug_in_order() {
    local place units=(a b c d)
    for place in "$@"; do
        power_unit "${units[0]}" "$place"
        wait_until "a unit is at $place" card_at "$place" >/dev/null
        units=("${units[@]:1}")
    done
    for place in "$@"; do
        wait_until "the unit at $place is ready" has_ports "$place" 1
    done
}

pull_all_out() {
    local unit place
    for unit in a b c d; do
        echo >"$gadgets/$unit/UDC"
    done
    for place in 0 1 2 3; do
        wait_until "nothing is at $place" nothing_at "$place"
    done
}

settings_by_place() { surfaces kestrin.usb.path uniqueID group storedPosition | sort; }

for unit in a b c d; do
    make_unit $unit 1
done
plug_in_order 0 1 2 3
group=0
for surface in $(surfaces uniqueID); do
    midisetup place "$surface" $((++group)) $((10 * group))
done
before=$(settings_by_place)
expect_equal "the doctor's notes" 1 \
    "$(midisetup doctor | grep -c 'by their USB port alone.* no serial number: MCU Pro USB, MCU Pro USB 2, ')"
orders=$(python3 -IS -c 'import itertools; print(*map("".join, itertools.permutations("0123")), sep="\n")' | sed -n "1~${RIG_LONG:-4}p")
for order in $orders; do
    pull_all_out
    plug_in_order ${order:0:1} ${order:1:1} ${order:2:1} ${order:3:1}
    expect_equal "settings by place after the order $order" "$before" "$(settings_by_place)"
done
echo "figure: $(wc -w <<<"$orders") orders, the last with cards $(for place in 0 1 2 3; do card_at $place; done | xargs)"
