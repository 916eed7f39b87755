#!/usr/bin/env bash
# clean-debian.sh PACKAGES: installs the packages of that folder into a Debian that has nothing else, uses what
# they hold as a musician and as the author of a mixer would, and removes them.
set -euo pipefail
[[ $EUID -eq 0 ]] || exec sudo "$0" "$@"
# What is mounted goes with the process.
[[ -n ${OWN_MOUNTS:-} ]] || OWN_MOUNTS=yes exec unshare --mount "$0" "$@"
source=$(realpath "$(dirname "$0")/../..")
packages=$(realpath "$1")
export root
root=$(mktemp -d)
trap 'umount "$root"/{dev,proc} || true; rm -rf --one-file-system "$root"*' EXIT

quietly() { "$@" >"$root.log" 2>&1 || { cat "$root.log"; return 1; }; }
inside() { quietly chroot "$root" env LANG=C.UTF-8 HOME=/root DEBIAN_FRONTEND=noninteractive sh -ec "$1"; }
musician() {
    chroot --userspec=musician:musician "$root" env -i PATH=/usr/bin:/bin LANG=C.UTF-8 HOME=/home/musician \
        DISPLAY="${DISPLAY:-}" BROWSER=/srv/browser "$@"
}
install='apt-get install -y --no-install-recommends'

echo "== A Debian of its own, from where this machine's packages come"
debian=('Origin: Debian' 'Created-By: Packages')
[[ -n $(apt-get indextargets "${debian[@]}") ]] || quietly apt-get update
apt-config dump Acquire | grep -v IndexTargets >"$root.options"
if ! apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' "${debian[@]}" | sort -u |
    quietly mmdebstrap --variant=minbase --skip=cleanup/apt/lists --aptopt="$root.options" \
        "$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)" "$root" -; then
    echo "No clean Debian can be had here, so the packages were not tested."
    exit 1
fi
cp /etc/resolv.conf /etc/hosts "$root/etc"
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
inside 'useradd --create-home --skel /nowhere musician'

echo "== The program, with nothing but what it depends on"
cp "$packages"/*.deb "$root/srv"
inside "$install /srv/libkestrin-midi1_*.deb /srv/sorvex-mackie-setup_*.deb"
inside 'for plugin in platforms/libqxcb platforms/libqwayland-generic imageformats/libqsvg; do
    ldd /usr/lib/*/qt6/plugins/$plugin.so
done'
grep -q 'not found' "$root.log" && exit 1
for size in 16x16 48x48 512x512; do
    [[ -s $root/usr/share/icons/hicolor/$size/apps/sorvex-mackie-setup.png ]]
done
musician midisetup demo >/dev/null
musician midisetup surfaces | grep -q '^Left Extender on Desk Interface'
musician surface-ports --version

# With a display: the window speaks German, its Help button opens the page, its Ok button ends it well.
at_the_desk() {
    set -euo pipefail
    title=$(sed -En 's/.*name="Velt[^"]*" value="([^"]*[^" ]) *".*/\1/p' \
        "$root/usr/share/sorvex-mackie-setup/de.lproj/LocalizableStrings.xml")
    musician LANGUAGE=de sorvex-mackie-setup &
    window=$(timeout 60 xdotool search --sync --onlyvisible --name "^$title\$")
    for _ in {1..60}; do
        xdotool mousemove --window "$window" 300 171 click 1 sleep 1
        [[ ! -s $root/tmp/read ]] || break
    done
    grep -q '/usr/share/sorvex-mackie-setup/.*SorvexMackieSurfaceHelp.htm$' "$root/tmp/read"
    xdotool mousemove --window "$window" 500 171 click 1
    wait $!
}
printf '#!/bin/sh\necho "$@" >/tmp/read\n' >"$root/srv/browser"
chmod +x "$root/srv/browser"
export -f musician at_the_desk
timeout 180 "$source/tests/support/with-display" bash -c at_the_desk

echo "== A mixer, with the development files"
inside "$install g++ make cmake pkg-config /srv/libkestrin-midi-dev_*.deb"
cp "$source/examples/mixer/main.c" "$source/tests/packaging/package/CMakeLists.txt" "$root/srv"
inside 'cd /srv
    cc main.c $(pkg-config --cflags --libs kestrin-midi) -o mixer
    cmake -DMIXER=/srv/main.c . && make'
for mixer in mixer mixer-shared mixer-static; do
    musician /srv/$mixer | grep 'group 1, position 0: Left Extender'
done

echo "== Removed; the user's database alone is left"
inside 'rm -r /srv/* /tmp/read; apt-get purge -y libkestrin-midi1 libkestrin-midi-dev sorvex-mackie-setup'
left=$(cd "$root" && find . -xdev ! -path '*/.cache*' \
    \( -path './home/musician/*' -type f -o -regex '.*\(kestrin\|sorvex\|midisetup\|surface-ports\).*' \))
database=./home/musician/.local/share/kestrin-midi
[[ $left == "$database"$'\n'"$database/objects.sqlite3" ]] || { echo "$left"; exit 1; }
