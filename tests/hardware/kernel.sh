# Sourced by run: gets the stock kernel and builds what the machine boots from.

# What the machine loads, and what these depend on. The rest of the package is not kept.
kernel_files() {
    local name
    printf './boot/vmlinuz-*\n'
    printf './lib/modules/*/modules.%s\n' builtin order
    for name in \
        virtio virtio_ring virtio_pci virtio_pci_legacy_dev virtio_pci_modern_dev \
        9pnet 9pnet_virtio 9p netfs fscache overlay configfs \
        usb-common usbcore udc-core dummy_hcd libcomposite usb_f_midi usbip-core vhci-hcd \
        mc soundcore snd snd-timer snd-pcm snd-hwdep snd-rawmidi snd-seq-device \
        snd-seq snd-seq-dummy snd-seq-midi-event snd-seq-midi snd-usbmidi-lib snd-usb-audio; do
        printf './lib/modules/*/%s.ko\n' "$name"
    done
}

# The package with the kernel itself, which the package named after the architecture points to.
kernel_package() {
    apt-cache depends linux-image-amd64 2>/dev/null | sed -n 's/^ *Depends: *\(linux-image-[0-9].*\)/\1/p' |
        head -n 1
}

fetch_kernel() {
    local package
    package=$(kernel_package)
    if [ -z "$package" ] || ! (cd "$1" && apt-get download "$package" >apt.log 2>&1); then
        die "The hardware tests need Debian's kernel package (the one that linux-image-amd64 depends on)," \
            "and it could not be fetched. \`apt-get update\` may help; or put linux-image-*.deb into" \
            "$1 by hand."
    fi
}

# The kernel inside the self-unpacking image: booted as it is, it saves the emulated processor the
# unpacking. Offsets as in the kernel's x86 boot protocol (setup_sects, payload_offset, payload_length;
# the payload ends in four bytes of its unpacked length).
unpack_kernel() {
    local image=$1 sectors offset length
    sectors=$(od -An -tu1 -j 497 -N 1 "$image")
    offset=$(od -An -tu4 -j 584 -N 4 "$image")
    length=$(od -An -tu4 -j 588 -N 4 "$image")
    offset=$(((sectors + 1) * 512 + offset))
    head -c $((offset + length - 4)) "$image" | tail -c +$((offset + 1)) | xz -dc
}

build_initramfs() {
    local root=$1
    mkdir -p "$root"/{bin,proc,sys,dev,lower,upper,root}
    cp "$(command -v busybox)" "$root/bin/busybox"
    busybox depmod -b "$root" "$(basename "$root"/lib/modules/*)"
    (cd "$root" && find . | cpio --quiet -o -H newc -R 0:0)
}

# Leaves vmlinux and the modules' part of the initramfs in the folder CACHE; init is added each time.
unpack_package() {
    local cache=$1 package=$2 patterns
    rm -rf "$cache/unpacked"
    mkdir "$cache/unpacked"
    mapfile -t patterns < <(kernel_files)
    dpkg-deb --fsys-tarfile "$package" | tar -x -C "$cache/unpacked" --wildcards "${patterns[@]}"
    unpack_kernel "$cache"/unpacked/boot/vmlinuz-* >"$cache/vmlinux.part" 2>/dev/null ||
        cp "$cache"/unpacked/boot/vmlinuz-* "$cache/vmlinux.part" # packed otherwise: it can unpack itself
    rm -r "$cache/unpacked/boot"
    build_initramfs "$cache/unpacked" >"$cache/modules.cpio"
    rm -r "$cache/unpacked"
    mv "$cache/vmlinux.part" "$cache/vmlinux"
}

prepare_kernel() {
    local cache=$1 package
    mkdir -p "$cache"
    compgen -G "$cache/linux-image-*.deb" >/dev/null || fetch_kernel "$cache"
    package=$(ls -t "$cache"/linux-image-*.deb | head -n 1)
    if [ ! -f "$cache/vmlinux" ] || [ "$package" -nt "$cache/vmlinux" ] ||
        [ "$here/kernel.sh" -nt "$cache/vmlinux" ]; then
        unpack_package "$cache" "$package"
    fi
    # The kernel reads several archives put one behind the other.
    { cat "$cache/modules.cpio" && (cd "$here/guest" && echo init | cpio --quiet -o -H newc -R 0:0); } \
        >"$cache/initramfs"
}
