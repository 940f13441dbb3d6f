# Sourced by proofs that need a bare Debian 12 (debootstrap, minbase) of their own. Needs root.

need_root() {
    [ "$(id -u)" -eq 0 ] || { echo "$1: needs root" >&2; exit 2; }
}

# make_bare_root NAME: sets $root, where the bare system lies until this shell ends, and $log beside it. A folder that
# already holds one, named by ORV_BARE_BASE, is copied.
make_bare_root() {
    local mirror
    root=$(mktemp -d "/var/tmp/orv-$1-XXXXXX")
    log=$root.log
    trap remove_bare_root EXIT
    if [ -n "${ORV_BARE_BASE:-}" ]; then
        cp -a --reflink=auto "$ORV_BARE_BASE/." "$root/"
    else
        command -v debootstrap >/dev/null || apt-get install -y -qq debootstrap >&2
        mirror=$(sed -nE 's/^(deb|URIs:) *(\[[^]]*\] *)?([a-z]+:[^ ]*).*/\3/p' \
            /etc/apt/sources.list /etc/apt/sources.list.d/* 2>/dev/null | head -n 1)
        debootstrap --variant=minbase bookworm "$root" "$mirror" >"$log" 2>&1
    fi
    cp /etc/resolv.conf /etc/hosts "$root/etc/" 2>/dev/null || true
    cp -a /etc/apt/apt.conf.d/. "$root/etc/apt/apt.conf.d/" 2>/dev/null || true
    cp -a /etc/apt/sources.list "$root/etc/apt/" 2>/dev/null || true
    cp -a /etc/apt/sources.list.d/. "$root/etc/apt/sources.list.d/" 2>/dev/null || true
    mount -t proc proc "$root/proc"
    mount --bind /dev "$root/dev"
    mount --bind /dev/pts "$root/dev/pts"
}

remove_bare_root() {
    umount "$root/proc" 2>/dev/null || true
    umount "$root/dev/pts" 2>/dev/null || true
    umount "$root/dev" 2>/dev/null || true
    rm -rf --one-file-system "$root"
}

# in_root COMMAND: a shell command in the bare system; what it says goes to the log, of which the end is shown if it fails.
in_root() {
    chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive \
        LANG=C.UTF-8 bash -euc "cd /root && $1" >>"$log" 2>&1 || { echo "in the root: $1"; tail -n 40 "$log"; exit 1; }
}
