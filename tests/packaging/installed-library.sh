#!/usr/bin/env bash
# installed-library.sh SOURCE BUILD FOLDER: installs the MIDI library below FOLDER and uses it from there.
set -euo pipefail
source=$1 build=$2 folder=$3
here=$source/tests/packaging
rm -rf "$folder" && mkdir -p "$folder"
cd "$folder"
for component in runtime development; do
    cmake --install "$build" --prefix "$folder/installed" --component $component >/dev/null
done
pc=$(find installed -name kestrin-midi.pc)
export PKG_CONFIG_PATH=$folder/${pc%/*} CMAKE_PREFIX_PATH=$folder/installed
libraries=$(pkg-config --variable libdir kestrin-midi)
export LD_LIBRARY_PATH=$libraries${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
export KESTRIN_MIDI_DATABASE=$folder/objects.sqlite3
"$build/tools/midisetup/midisetup" demo >/dev/null
"$build/examples/mixer" >expected
[[ -s expected ]]

echo "== What is exported is what is listed is what the headers declare"
nm -D --defined-only "$libraries/libkestrin-midi.so" | sed -En 's/.* [A-Z] (.*)@@KESTRIN_MIDI_1$/\1/p' |
    sort >exported
nm -D --defined-only "$libraries/libkestrin-midi.so" | grep -v KESTRIN_MIDI_1 && exit 1
sed -En 's/^    (\w+);$/\1/p' "$source/Platform/CoreMIDI/kestrin-midi.symbols" | sort >listed
diff listed exported
grep -rl CF_EXTERN_C_BEGIN installed/include | xargs cat | sed 's://.*::' | tr -d '\n' |
    sed -E 's/static inline[^}]*\}//g' |
    grep -oP '\b(CF|MIDI|Kestrin)\w+(?=\([^;{}]*\);)|extern const \w+\s+\K\w+' | sort >declared
diff declared listed

echo "== A program in C by pkg-config, shared and static; one with the library's inner names as its own"
read -ra shared < <(pkg-config --cflags --libs kestrin-midi)
read -ra static < <(pkg-config --static --cflags --libs kestrin-midi)
for form in shared static; do
    declare -n flags=$form
    [[ $form == static ]] && flags=("${flags[@]/#-lkestrin-midi/-l:libkestrin-midi.a}")
    "${CC:-cc}" "$source/examples/mixer/main.c" "${flags[@]}" -o mixer-$form
    ./mixer-$form | diff expected -
    "${CXX:-c++}" -std=c++20 "$here/own-names/main.cpp" "${flags[@]}" -o own-names-$form
    ./own-names-$form
done
readelf -d mixer-shared | grep -qF '[libkestrin-midi.so.1]'
readelf -d mixer-static | grep -F libkestrin-midi && exit 1

echo "== By find_package"
cmake -S "$here/package" -B package -DMIXER="$source/examples/mixer/main.c" >package.log
cmake --build package >>package.log
for form in shared static; do ./package/mixer-$form | diff expected -; done

echo "== From Python"
python3 - "$libraries/libkestrin-midi.so.1" <<'PYTHON'
import ctypes, sys
midi = ctypes.CDLL(sys.argv[1])
midi.CFStringMakeConstantString.restype = ctypes.c_void_p
midi.MIDIExternalDeviceCreate.argtypes = [ctypes.c_void_p] * 4
before = midi.MIDIGetNumberOfExternalDevices()
device = ctypes.c_uint32()
name = midi.CFStringMakeConstantString(b"Left")
assert midi.MIDIExternalDeviceCreate(name, None, None, ctypes.byref(device)) == 0
assert midi.MIDISetupAddExternalDevice(device) == 0
assert midi.MIDIGetNumberOfExternalDevices() == before + 1 > 1
PYTHON
