# Names for which the kernel has no room: it shows 31 bytes, of every port the same, cut anywhere.
long="MCU Pro USB with a product text that goes on for longer than a kernel has room"
make_unit long 4 product="$long"
plug long 0
expect_equal "the first of four ports that the kernel calls the same" "$long Port 1" "$(surfaces name)"

greek="Mischpult Größe Ω – Fader und mehr"
make_unit greek 2 manufacturer="  Öhler  " product="$greek" vendor=1d6b id=0104
plug greek 1
expect_equal "whole names, and ports by number" "Interfaces
  $long, surface: group 0, no position chosen
    Port 1 (in, out)
    Port 2 (in, out)
    Port 3 (in, out)
    Port 4 (in, out)
  $greek
    Port 1 (in, out)
    Port 2 (in, out)" "$(tree)"
expect_equal "manufacturer without the blanks around it" "Öhler" "$(midisetup get "$greek" manufacturer)"
