# Two equal units with serials of their own, taken out and plugged in the other way round: the kernel gives
# each the other's card, client and USB path.
make_unit left 4 serial=SN001
make_unit right 4 serial=SN002
plug left 0
plug right 1
expect_equal "surfaces" "MCU Pro USB Port 1
MCU Pro USB 2 Port 1" "$(surfaces name)"
settle "MCU Pro USB" 1 10
settle "MCU Pro USB 2" 2 20

unplug left
unplug right
plug right 0
plug left 1
expect_equal "settings after the exchange" "MCU Pro USB Port 1 | 1 | 10
MCU Pro USB 2 Port 1 | 2 | 20" "$(surfaces name group storedPosition | sort -r)"
unplug right
expect_equal "what is left is the one that was left" "MCU Pro USB Port 1 | 1 | 10" \
    "$(surfaces name group storedPosition)"
expect_equal "no device is new" 2 "$(tree | grep -c "MCU Pro USB")"
