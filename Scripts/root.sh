# shellcheck shell=bash
# Creates clean Debian systems for other scripts. To be sourced after lib.sh, by root.

# make_root RELEASE FOLDER: creates a minimal Debian system of this release (code name) in the
# folder. It uses this system's package source and apt settings.
make_root() {
    local release=$1 folder=$2 own mirror
    own=$(. /etc/os-release && echo "$VERSION_CODENAME")
    # shellcheck disable=SC2016  # These are apt's own variables.
    mirror=$(apt-get indextargets --format '$(RELEASE) $(REPO_URI)' 'Created-By: Packages' |
        awk -v release="$own" '$1 == release { print $2; exit }')
    [[ -n $mirror ]] || fail "apt has no source of $own"
    say "Creating a clean system of Debian $release"
    rm -rf "$folder.part"
    mkdir -p "$(dirname "$folder")"
    apt-config dump Acquire >"$folder.conf"
    # A system that can be created again need not survive a power failure.
    mmdebstrap --variant=minbase --mode=root --aptopt="$folder.conf" --dpkgopt=force-unsafe-io \
        --include=ca-certificates "$release" "$folder.part" "$mirror" >"$folder.log" 2>&1 ||
        fail "mmdebstrap: $(tail -n 3 "$folder.log")"
    # Prevent services from starting in the new system.
    printf '#!/bin/sh\nexit 101\n' >"$folder.part/usr/sbin/policy-rc.d"
    chmod +x "$folder.part/usr/sbin/policy-rc.d"
    mv "$folder.part" "$folder"
}

# mount_system ROOT: provides a root with /proc, devices and host names. To be called in new mount
# and process namespaces, which take the mounts with them when they end.
mount_system() {
    local root=$1 device
    mount -t proc proc "$root/proc"
    mount -t tmpfs dev "$root/dev"
    mkdir "$root/dev/shm" "$root/dev/pts"
    for device in null zero random urandom full tty; do
        touch "$root/dev/$device"
        mount --bind "/dev/$device" "$root/dev/$device"
    done
    ln -s /proc/self/fd "$root/dev/fd"
    chmod 1777 "$root/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
    ln -s pts/ptmx "$root/dev/ptmx"
    cp /etc/resolv.conf /etc/hosts "$root/etc/"
}
