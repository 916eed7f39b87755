# The program itself, in a window: it finds the surface that the kernel enumerated, and Ok stores what was
# entered for it.
program=$BUILD_DIR/app/sorvex-mackie-setup
[ -x "$program" ] || skip "the build has no ${program##*/}"
for needed in Xvfb xdotool openbox; do
    command -v $needed >/dev/null || skip "there is no $needed"
done

make_unit surface 4 serial=SN001
plug surface 0
timeout 120 "$RIG/../support/with-display" "$RIG/guest/press-ok" "$program" 2
expect_equal "the stored group and position" "2 127" "$(settings_of "MCU Pro USB")"
