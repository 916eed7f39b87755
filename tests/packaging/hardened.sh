#!/usr/bin/env bash
# hardened.sh [--optimised] FILE...: whether built programs and shared libraries are hardened: position-independent,
# relocations read-only from the start, no executable stack, stack protector, control-flow protection (x86-64) and,
# in an optimised build, the C library's checks of lengths.
set -euo pipefail
optimised=false
[[ $1 == --optimised ]] && optimised=true && shift

failures=0
lacks() { echo "$file lacks $1" >&2; failures=$((failures + 1)); }
for file in "$@"; do
    headers=$(readelf -lWhd "$file")
    symbols=$(readelf -sW --dyn-syms "$file")
    grep -q 'Type: *DYN' <<<"$headers" || lacks 'position independence'
    grep -q GNU_RELRO <<<"$headers" && grep -qE 'BIND_NOW|Flags:.* NOW' <<<"$headers" || lacks 'read-only relocations'
    grep -qE 'GNU_STACK.* RW ' <<<"$headers" || lacks 'a stack that is not executable'
    grep -q __stack_chk_fail <<<"$symbols" || lacks 'the stack protector'
    # The start files of the C library bring a few marks; the property of the whole file is theirs, too.
    [[ $(uname -m) != x86_64 || $(objdump -d --no-show-raw-insn "$file" | grep -c endbr64) -gt 16 ]] ||
        lacks 'control-flow protection'
    ! $optimised || grep -q '_chk@' <<<"$symbols" || lacks 'checks of lengths'
done
echo "$# files, $failures faults"
exit $((failures > 0))
