# A bare Debian 12 (debootstrap, minbase), this tree cloned into it: ./run and ./test, one command each. Needs root.
set -euo pipefail
[ "$(id -u)" -eq 0 ] || { echo "bare-root: needs root" >&2; exit 2; }
command -v debootstrap >/dev/null || apt-get install -y -qq debootstrap >&2
mirror=$(sed -nE 's/^(deb|URIs:) *(\[[^]]*\] *)?([a-z]+:[^ ]*).*/\3/p' /etc/apt/sources.list /etc/apt/sources.list.d/* 2>/dev/null | head -n 1)
root=$(mktemp -d /var/tmp/orv-bare-XXXXXX)
log=$root.log
cleanup() {
    umount "$root/proc" 2>/dev/null || true
    umount "$root/dev" 2>/dev/null || true
    rm -rf --one-file-system "$root"
}
trap cleanup EXIT
started=$(date +%s)
debootstrap --variant=minbase bookworm "$root" "$mirror" >"$log" 2>&1
cp /etc/resolv.conf "$root/etc/" 2>/dev/null || true
cp /etc/hosts "$root/etc/" 2>/dev/null || true
cp -a /etc/apt/apt.conf.d/. "$root/etc/apt/apt.conf.d/" 2>/dev/null || true
cp -a /etc/apt/sources.list "$root/etc/apt/" 2>/dev/null || true
cp -a /etc/apt/sources.list.d/. "$root/etc/apt/sources.list.d/" 2>/dev/null || true
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
git clone -q . "$root/root/tree"
for command in ./run ./test; do
    chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root bash -c "cd /root/tree && $command" \
        >>"$log" 2>&1 || { tail -n 40 "$log"; exit 1; }
done
tests=$(grep -Eo '[0-9]+% tests passed.*' "$log" | tail -n 1)
echo "bare-root: ./run and ./test in a minbase root: $tests, $(($(date +%s) - started)) s in all"
