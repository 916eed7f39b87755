#!/usr/bin/env bash
# subproject.sh SOURCE BUILD FOLDER: a project in C takes the tree in as a folder of its own, in FOLDER.
set -euo pipefail
source=$1 folder=$3
rm -rf "$folder" && mkdir -p "$folder"

echo "== The library alone, with no word of what only the rest needs"
forbidden=(--no-warn-unused-cli)
for package in Qt6 Boost LibXml2 CLI11 nlohmann_json GTest; do
    forbidden+=(-DCMAKE_DISABLE_FIND_PACKAGE_$package=ON)
done
for shared in OFF ON; do
    cmake -S "$source/tests/packaging/subproject" -B "$folder/alone" -DKESTRIN_FOLDER="$source" \
        -DBUILD_SHARED_LIBS=$shared "${forbidden[@]}" >"$folder/log"
    cmake --build "$folder/alone" --target mixer >>"$folder/log"
    KESTRIN_MIDI_DATABASE=$folder/objects.sqlite3 "$folder/alone/mixer"
done

echo "== The whole tree"
cmake -S "$source/tests/packaging/subproject" -B "$folder/whole" -DKESTRIN_FOLDER="$source" \
    -DKESTRIN_MIDI_ONLY=OFF >"$folder/log"
cmake --build "$folder/whole" --target help >"$folder/targets"
grep -q sorvex-mackie-setup "$folder/targets"
