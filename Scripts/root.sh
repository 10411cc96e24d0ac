# shellcheck shell=bash
# Clean Debian roots for the scripts beside this file. To be sourced after lib.sh, by root.

# make_root RELEASE FOLDER: makes a minimal Debian of that release (by code name) in the folder,
# from where this system gets its own packages and by its own settings of apt.
make_root() {
    local release=$1 folder=$2 own mirror
    own=$(. /etc/os-release && echo "$VERSION_CODENAME")
    # shellcheck disable=SC2016  # These are apt's own variables.
    mirror=$(apt-get indextargets --format '$(RELEASE) $(REPO_URI)' 'Created-By: Packages' |
        awk -v release="$own" '$1 == release { print $2; exit }')
    [[ -n $mirror ]] || fail "apt names no source of $own"
    say "A clean root of Debian $release"
    rm -rf "$folder.part"
    mkdir -p "$(dirname "$folder")"
    apt-config dump Acquire >"$folder.conf"
    mmdebstrap --variant=minbase --mode=root --aptopt="$folder.conf" --include=ca-certificates \
        "$release" "$folder.part" "$mirror" >"$folder.log" 2>&1 ||
        fail "mmdebstrap: $(tail -n 3 "$folder.log")"
    # No service starts in there.
    printf '#!/bin/sh\nexit 101\n' >"$folder.part/usr/sbin/policy-rc.d"
    chmod +x "$folder.part/usr/sbin/policy-rc.d"
    mv "$folder.part" "$folder"
}

# mount_system ROOT: gives a root its processes, devices and names of hosts. For the inside of mount
# and process namespaces, with which the mounts go.
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
